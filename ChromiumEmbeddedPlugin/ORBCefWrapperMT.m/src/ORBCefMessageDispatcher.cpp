#include "ORBCefMessageDispatcher.h"

#include <string>
#include <utility>
#include <vector>

#include "ORBCefDevToolsClient.h"
#include "ORBCefProcessMessages.h"

namespace {

using Operation = bool (*)(const ORBCefMessageContext& context);

struct Row {
  const char* name;
  Operation operation;
};

// The pages count their zoom in hundredths of the engine's levels.
constexpr double kZoomScale = 0.01;

bool ReportV8Context(const ORBCefMessageContext& context) {
  context.events.OnV8Context(context.arguments->GetBool(0));
  return true;
}

bool ReportDocumentReady(const ORBCefMessageContext& context) {
  context.events.OnStateChanged(ORBCefBrowserEvents::kDocumentReady);
  return true;
}

bool ReportUnload(const ORBCefMessageContext& context) {
  context.events.OnStateChanged(ORBCefBrowserEvents::kUnloaded);
  return true;
}

bool ChangeZoom(const ORBCefMessageContext& context) {
  const double step = context.arguments->GetDouble(0) * kZoomScale;
  const CefRefPtr<CefBrowserHost> host = context.browser->GetHost();
  if (context.settings.zoom_by_page_enabled && host) {
    host->SetZoomLevel(host->GetZoomLevel() + step);
  }
  // The host hears of the step even if the zoom stays.
  context.events.OnZoomChanged(step);
  return true;
}

bool ResetZoom(const ORBCefMessageContext& context) {
  // Whatever zoom_by_page_enabled says: the way back is always open.
  if (const CefRefPtr<CefBrowserHost> host = context.browser->GetHost()) {
    host->SetZoomLevel(0);
  }
  context.events.OnZoomChanged(0);
  return true;
}

bool ReportDocumentSize(const ORBCefMessageContext& context) {
  context.events.OnDocumentSize(context.arguments->GetInt(0), context.arguments->GetInt(1));
  return true;
}

bool KeepFocusedNode(const ORBCefMessageContext& context) {
  context.settings.focused_form_control = context.arguments->GetBool(0);
  return true;
}

bool ReportStrings(const ORBCefMessageContext& context) {
  const CefRefPtr<CefListValue> list = context.arguments->GetList(0);
  if (!list) {
    return false;
  }
  std::vector<CefString> strings;
  strings.reserve(list->GetSize());
  for (size_t i = 0; i < list->GetSize(); ++i) {
    strings.push_back(list->GetString(i));
  }
  context.events.OnStringsReceived(strings);
  return true;
}

bool LoadHome(const ORBCefMessageContext& context) {
  const CefRefPtr<CefFrame> frame = context.browser->GetMainFrame();
  if (!frame) {
    return false;
  }
  frame->LoadURL(context.settings.home_url.Get());
  return true;
}

bool OpenDevTools(const ORBCefMessageContext& context) {
  ORBCefDevToolsClient::Open(context.browser);
  return true;
}

bool CloseDevTools(const ORBCefMessageContext& context) {
  if (const CefRefPtr<CefBrowserHost> host = context.browser->GetHost()) {
    host->CloseDevTools();
  }
  return true;
}

// The job comes after the dispatch, when the caller has left its lock.
bool KeepRequest(const ORBCefMessageContext& context,
                 std::unique_ptr<ORBCefPreferenceRequest> request) {
  context.preference_request = std::move(request);
  return context.preference_request != nullptr;
}

bool SaveValue(const ORBCefMessageContext& context) {
  return KeepRequest(context, ORBCefPreferenceRequest::FromSaveValue(
                                  context.browser, context.sender, context.arguments));
}

bool LoadValue(const ORBCefMessageContext& context) {
  return KeepRequest(context, ORBCefPreferenceRequest::FromLoadValue(
                                  context.browser, context.sender, context.arguments));
}

// Compared in this order; the first match acts.
constexpr Row kRows[] = {
    {ORBCefMessage::kV8Context, ReportV8Context},
    {ORBCefMessage::kOnDOMContentLoaded, ReportDocumentReady},
    {ORBCefMessage::kOnUnload, ReportUnload},
    {ORBCefMessage::kOnZoomChanged, ChangeZoom},
    {ORBCefMessage::kOnZoomReset, ResetZoom},
    {ORBCefMessage::kDocumentSize, ReportDocumentSize},
    {ORBCefMessage::kFocusedNodeChanged, KeepFocusedNode},
    {ORBCefMessage::kSendString, ReportStrings},
    {ORBCefMessage::kLoadHome, LoadHome},
    {ORBCefMessage::kOpenDevTools, OpenDevTools},
    {ORBCefMessage::kCloseDevTools, CloseDevTools},
    {ORBCefMessage::kSaveValue, SaveValue},
    {ORBCefMessage::kLoadValue, LoadValue},
};

}  // namespace

namespace ORBCefMessageDispatcher {

bool Dispatch(const CefString& name, const ORBCefMessageContext& context) {
  if (!context.browser || !context.arguments) {
    return false;
  }
  const std::string text = name.ToString();
  for (const Row& row : kRows) {
    if (text == row.name) {
      return row.operation(context);
    }
  }
  return false;
}

}  // namespace ORBCefMessageDispatcher
