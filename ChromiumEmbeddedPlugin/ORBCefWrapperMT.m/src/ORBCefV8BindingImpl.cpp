#include "ORBCefV8BindingImpl.h"

#include <string>

#include "ORBCefFixedText.h"
#include "ORBCefLog.h"
#include "ORBCefProcessMessages.h"
#include "ORBCefScriptRunner.h"
#include "ORBCefToolsWrapperMT.h"
#include "ORBCefV8ContextScope.h"
#include "include/cef_values.h"
#include "platform/Process.h"

namespace {

constexpr std::size_t kSendStringArguments = 3;
constexpr char kSendStringTopic[] = "sendString";

constexpr ORBCefFixedText kUrl("url");
constexpr ORBCefFixedText kLine("line");
constexpr ORBCefFixedText kColumn("column");
constexpr ORBCefFixedText kRecordable("recordable");
constexpr ORBCefFixedText kCaptureAll("captureAll");
constexpr ORBCefFixedText kWidth("width");
constexpr ORBCefFixedText kHeight("height");

int ReadInt(const CefRefPtr<CefV8Value>& object, const CefString& key) {
  const CefRefPtr<CefV8Value> value = object->GetValue(key);
  return value ? value->GetIntValue() : 0;
}

// The texts of an array's elements: a number or an object has none and comes as an empty text, so
// the scripts stringify their values before the call.
// @return null if `value` is no array or an element is missing.
CefRefPtr<CefListValue> ToStringList(const CefRefPtr<CefV8Value>& value) {
  if (!value || !value->IsArray()) {
    return nullptr;
  }
  const int length = value->GetArrayLength();
  CefRefPtr<CefListValue> list = CefListValue::Create();
  list->SetSize(static_cast<std::size_t>(length));
  for (int index = 0; index < length; ++index) {
    const CefRefPtr<CefV8Value> element = value->GetValue(index);
    if (!element) {
      return nullptr;
    }
    list->SetString(static_cast<std::size_t>(index), element->GetStringValue());
  }
  return list;
}

// Where in the page's scripts the call comes from. An undefined property reads as 0 or as the empty
// text; only a property that the engine does not give at all counts as missing.
// @return null if `value` is no object or a property is missing.
CefRefPtr<CefDictionaryValue> ToPosition(const CefRefPtr<CefV8Value>& value) {
  if (!value || !value->IsObject()) {
    return nullptr;
  }
  const CefRefPtr<CefV8Value> url = value->GetValue(kUrl.Text());
  const CefRefPtr<CefV8Value> line = value->GetValue(kLine.Text());
  const CefRefPtr<CefV8Value> column = value->GetValue(kColumn.Text());
  if (!url || !line || !column) {
    return nullptr;
  }
  CefRefPtr<CefDictionaryValue> position = CefDictionaryValue::Create();
  position->SetString(kUrl.Text(), url->GetStringValue());
  position->SetInt(kLine.Text(), line->GetIntValue());
  position->SetInt(kColumn.Text(), column->GetIntValue());
  return position;
}

// How a record run may treat the strings. Unless the page says otherwise they are not recordable,
// and everything of them is captured.
// @return null if `value` is no object or a property is missing.
CefRefPtr<CefDictionaryValue> ToRecordOptions(const CefRefPtr<CefV8Value>& value) {
  if (!value || !value->IsObject()) {
    return nullptr;
  }
  const CefRefPtr<CefV8Value> recordable = value->GetValue(kRecordable.Text());
  const CefRefPtr<CefV8Value> capture_all = value->GetValue(kCaptureAll.Text());
  if (!recordable || !capture_all) {
    return nullptr;
  }
  CefRefPtr<CefDictionaryValue> options = CefDictionaryValue::Create();
  options->SetBool(kRecordable.Text(), !recordable->IsUndefined() && recordable->GetBoolValue());
  options->SetBool(kCaptureAll.Text(), capture_all->IsUndefined() || capture_all->GetBoolValue());
  return options;
}

void LogStrings(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefListValue>& strings) {
  if (!ORBCefLog::IsAdmitted(ORBCefLog::kInfo) ||
      !ORBCefToolsWrapperMT::IsLogTopicEnabled(kSendStringTopic)) {
    return;
  }
  std::string text;
  for (std::size_t index = 0; index < strings->GetSize(); ++index) {
    text += '\t' + std::to_string(index) + " - " + strings->GetString(index).ToString() + '\n';
  }
  if (!text.empty()) {
    ORBCefLog::RendererInfo(browser->GetIdentifier(), "SendString arguments:\n", text);
  }
}

}  // namespace

bool ORBCefV8BindingImpl::SendDocumentSize(const CefRefPtr<CefV8Context>& context) {
  const CefRefPtr<CefBrowser> browser = context ? context->GetBrowser() : nullptr;
  if (!browser) {
    return false;
  }
  const ORBCefV8ContextScope scope(context);
  CefRefPtr<CefV8Value> size;
  CefRefPtr<CefV8Exception> exception;
  ORBCefScriptRunner::RunScriptFile(ORBCefScriptRunner::kGetDocumentSize, context, size, exception);
  if (exception && ORBCefLog::IsAdmitted(ORBCefLog::kError)) {
    ORBCefLog::RendererError(browser->GetIdentifier(),
                             "Exception on the getDocumentSize snippet:\n", "\t",
                             exception->GetMessage());
  }
  // A snippet that gives nothing is a fault of the installation: there is no size to send.
  if (!size) {
    return false;
  }
  return ORBCefMessage::SendDocumentSize(browser, ReadInt(size, kWidth.Text()),
                                         ReadInt(size, kHeight.Text()));
}

bool ORBCefV8BindingImpl::SendZoomChange(const CefRefPtr<CefBrowser>& browser,
                                         const CefRefPtr<CefV8Value>& step) {
  if (!step || step->IsUndefined()) {
    return false;
  }
  const double value = step->GetDoubleValue();
  return value != 0.0 && ORBCefMessage::SendZoomChanged(browser, value);
}

bool ORBCefV8BindingImpl::SendStrings(const CefRefPtr<CefBrowser>& browser,
                                      const CefV8ValueList& arguments) {
  if (!browser || arguments.size() < kSendStringArguments) {
    return false;
  }
  const CefRefPtr<CefListValue> strings = ToStringList(arguments[0]);
  if (!strings) {
    return false;
  }
  // Logged before the other arguments are looked at: a call that they spoil shows its strings too.
  LogStrings(browser, strings);
  const CefRefPtr<CefDictionaryValue> position = ToPosition(arguments[1]);
  if (!position) {
    return false;
  }
  const CefRefPtr<CefDictionaryValue> options = ToRecordOptions(arguments[2]);
  if (!options) {
    return false;
  }
  const CefRefPtr<CefProcessMessage> message =
      ORBCefMessage::Create(ORBCefMessage::kSendString, arguments.size());
  if (!message) {
    return false;
  }
  const CefRefPtr<CefListValue> items = message->GetArgumentList();
  items->SetList(0, strings);
  items->SetDictionary(1, position);
  items->SetDictionary(2, options);
  ORBCefMessage::SendToBrowser(browser, message);
  return true;
}

bool ORBCefV8BindingImpl::ReadEnvironment(const CefRefPtr<CefV8Value>& name, CefString& value) {
  if (!name || name->IsNull() || name->IsUndefined()) {
    return false;
  }
  const std::string variable = name->GetStringValue().ToString();
  if (variable.empty()) {
    return false;
  }
  const char* text = platform::GetEnvironment(variable.c_str());
  value.FromString(text ? text : "");
  return true;
}
