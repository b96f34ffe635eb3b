#include "ORBCefProcessMessages.h"

#include "include/cef_frame.h"
#include "include/cef_values.h"

namespace ORBCefMessage {

CefRefPtr<CefProcessMessage> Create(const char* name, std::size_t item_count) {
  CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(name);
  if (message && item_count > 0) {
    message->GetArgumentList()->SetSize(item_count);
  }
  return message;
}

void SendToBrowser(const CefRefPtr<CefBrowser>& browser,
                   const CefRefPtr<CefProcessMessage>& message) {
  if (!browser || !message) {
    return;
  }
  if (CefRefPtr<CefFrame> main_frame = browser->GetMainFrame()) {
    main_frame->SendProcessMessage(PID_BROWSER, message);
  }
}

bool SendPlain(const CefRefPtr<CefBrowser>& browser, const char* name) {
  if (!browser) {
    return false;
  }
  SendToBrowser(browser, Create(name, 0));
  return true;
}

bool SendFlag(const CefRefPtr<CefBrowser>& browser, const char* name, bool value) {
  if (!browser) {
    return false;
  }
  if (CefRefPtr<CefProcessMessage> message = Create(name, 1)) {
    message->GetArgumentList()->SetBool(0, value);
    SendToBrowser(browser, message);
  }
  return true;
}

bool SendZoomChanged(const CefRefPtr<CefBrowser>& browser, double step) {
  if (!browser) {
    return false;
  }
  if (CefRefPtr<CefProcessMessage> message = Create(kOnZoomChanged, 1)) {
    message->GetArgumentList()->SetDouble(0, step);
    SendToBrowser(browser, message);
  }
  return true;
}

bool SendDocumentSize(const CefRefPtr<CefBrowser>& browser, int width, int height) {
  if (!browser) {
    return false;
  }
  if (CefRefPtr<CefProcessMessage> message = Create(kDocumentSize, 2)) {
    const CefRefPtr<CefListValue> arguments = message->GetArgumentList();
    arguments->SetInt(0, width);
    arguments->SetInt(1, height);
    SendToBrowser(browser, message);
  }
  return true;
}

bool SendSaveValue(const CefRefPtr<CefBrowser>& browser, int key, const CefString& origin,
                   const CefString& name, const CefString& value) {
  if (!browser) {
    return false;
  }
  if (CefRefPtr<CefProcessMessage> message = Create(kSaveValue, 4)) {
    const CefRefPtr<CefListValue> arguments = message->GetArgumentList();
    arguments->SetInt(0, key);
    arguments->SetString(1, origin);
    arguments->SetString(2, name);
    arguments->SetString(3, value);
    SendToBrowser(browser, message);
  }
  return true;
}

bool SendLoadValue(const CefRefPtr<CefBrowser>& browser, int key, const CefString& origin,
                   const CefString& name) {
  if (!browser) {
    return false;
  }
  if (CefRefPtr<CefProcessMessage> message = Create(kLoadValue, 3)) {
    const CefRefPtr<CefListValue> arguments = message->GetArgumentList();
    arguments->SetInt(0, key);
    arguments->SetString(1, origin);
    arguments->SetString(2, name);
    SendToBrowser(browser, message);
  }
  return true;
}

}  // namespace ORBCefMessage
