#include "include/cef_client.h"
#include "include/cef_display_handler.h"
#include "include/cef_download_handler.h"
#include "include/cef_jsdialog_handler.h"
#include "include/cef_life_span_handler.h"
#include "include/cef_load_handler.h"
#include "include/cef_render_handler.h"
#include "include/cef_request_handler.h"
#include "include/cef_resource_request_handler.h"
#include "messages.h"
#include "neutral_classes.h"
#include "play.h"
#include "requests.h"
#include "script.h"

namespace standin {

namespace {

using Call = orbcef_standin_call;

// What the client told it is the answer of the call.
class DownloadCallback : public CefBeforeDownloadCallback {
 public:
  explicit DownloadCallback(Call& call) : _call(call) {}
  void Continue(const CefString& download_path, bool show_dialog) override {
    AnswerText(_call, download_path.ToString());
    _call.outs[0] = show_dialog ? 1 : 0;
    _call.outs[1] = 1;
  }

 private:
  Call& _call;

  STANDIN_OBJECT(DownloadCallback);
};

class DownloadItem : public engine_neutral::NeutralDownloadItem {
 public:
  bool IsValid() override { return true; }

 private:
  STANDIN_OBJECT(DownloadItem);
};

CefRefPtr<CefRequest> RequestOf(const Call& call) {
  const std::string method = TextArgument(call, 1);
  return MakeRequest(TextArgument(call, 0), method.empty() ? "GET" : method,
                     static_cast<cef_transition_type_t>(call.numbers[0]));
}

void AfterCreated(Call& call, const ViewPtr& view, CefLifeSpanHandler& handler) {
  handler.OnAfterCreated(BrowserArgument(call, view));
}

void DoClose(Call& call, const ViewPtr& view, CefLifeSpanHandler& handler) {
  call.result = handler.DoClose(BrowserArgument(call, view));
}

void BeforeClose(Call& call, const ViewPtr& view, CefLifeSpanHandler& handler) {
  handler.OnBeforeClose(BrowserArgument(call, view));
}

// An allowed popup comes up at once, with the client of its opener.
void BeforePopup(Call& call, const ViewPtr& view, CefLifeSpanHandler& handler) {
  CefWindowInfo info;
  CefRefPtr<CefClient> client = ClientOf(view);
  CefBrowserSettings settings;
  CefRefPtr<CefDictionaryValue> extra;
  bool no_access = false;
  call.result = handler.OnBeforePopup(
      BrowserArgument(call, view), FrameArgument(call, view), TextArgument(call, 0), CefString(),
      WOD_NEW_POPUP, true, CefPopupFeatures(), info, client, settings, extra, &no_access);
  if (!call.result) {
    call.outs[0] = CreateView(client, TextArgument(call, 0), true, true)->id;
  }
}

void LoadingStateChange(Call& call, const ViewPtr& view, CefLoadHandler& handler) {
  handler.OnLoadingStateChange(BrowserArgument(call, view), call.numbers[0] != 0,
                               call.numbers[1] != 0, call.numbers[2] != 0);
}

void LoadError(Call& call, const ViewPtr& view, CefLoadHandler& handler) {
  handler.OnLoadError(BrowserArgument(call, view), FrameArgument(call, view),
                      static_cast<cef_errorcode_t>(call.numbers[0]), TextArgument(call, 0),
                      TextArgument(call, 1));
}

void AddressChange(Call& call, const ViewPtr& view, CefDisplayHandler& handler) {
  handler.OnAddressChange(BrowserArgument(call, view), FrameArgument(call, view),
                          TextArgument(call, 0));
}

void TitleChange(Call& call, const ViewPtr& view, CefDisplayHandler& handler) {
  handler.OnTitleChange(BrowserArgument(call, view), TextArgument(call, 0));
}

void StatusMessage(Call& call, const ViewPtr& view, CefDisplayHandler& handler) {
  handler.OnStatusMessage(BrowserArgument(call, view), TextArgument(call, 0));
}

void ConsoleMessage(Call& call, const ViewPtr& view, CefDisplayHandler& handler) {
  call.result = handler.OnConsoleMessage(
      BrowserArgument(call, view), static_cast<cef_log_severity_t>(call.numbers[0]),
      TextArgument(call, 0), TextArgument(call, 1), call.numbers[1]);
}

void BeforeDownload(Call& call, const ViewPtr& view, CefDownloadHandler& handler) {
  const CefRefPtr<CefDownloadItem> item = new DownloadItem();
  const CefRefPtr<CefBeforeDownloadCallback> callback = new DownloadCallback(call);
  handler.OnBeforeDownload(BrowserArgument(call, view), Argument(call, 1, item),
                           TextArgument(call, 0), Argument(call, 2, callback));
}

void JsDialog(Call& call, const ViewPtr& view, CefJSDialogHandler& handler) {
  bool is_suppressed = false;
  call.result =
      handler.OnJSDialog(BrowserArgument(call, view), TextArgument(call, 0),
                         static_cast<cef_jsdialog_type_t>(call.numbers[0]), TextArgument(call, 1),
                         TextArgument(call, 2), nullptr, is_suppressed);
  call.outs[0] = is_suppressed ? 1 : 0;
}

void AnswerRect(Call& call, const CefRect& rect) {
  call.outs[0] = rect.x;
  call.outs[1] = rect.y;
  call.outs[2] = rect.width;
  call.outs[3] = rect.height;
}

void RootScreenRect(Call& call, const ViewPtr& view, CefRenderHandler& handler) {
  CefRect rect;
  call.result = handler.GetRootScreenRect(BrowserArgument(call, view), rect);
  AnswerRect(call, rect);
}

void ViewRect(Call& call, const ViewPtr& view, CefRenderHandler& handler) {
  CefRect rect;
  handler.GetViewRect(BrowserArgument(call, view), rect);
  AnswerRect(call, rect);
}

void ScreenPoint(Call& call, const ViewPtr& view, CefRenderHandler& handler) {
  call.result = handler.GetScreenPoint(BrowserArgument(call, view), call.numbers[0],
                                       call.numbers[1], call.outs[0], call.outs[1]);
}

void BeforeBrowse(Call& call, const ViewPtr& view, CefRequestHandler& handler) {
  call.result =
      handler.OnBeforeBrowse(BrowserArgument(call, view), FrameArgument(call, view),
                             Argument(call, 2, RequestOf(call)), call.numbers[1] != 0, false);
}

void RenderProcessTerminated(Call& call, const ViewPtr& view, CefRequestHandler& handler) {
  handler.OnRenderProcessTerminated(BrowserArgument(call, view),
                                    static_cast<cef_termination_status_t>(call.numbers[0]));
}

CefRefPtr<CefResourceRequestHandler> ResourceHandlerOf(Call& call, const ViewPtr& view,
                                                       CefRequestHandler& handler) {
  bool is_default_off = false;
  return handler.GetResourceRequestHandler(BrowserOf(view), FrameOf(view), RequestOf(call), true,
                                           false, CefString(), is_default_off);
}

void BeforeResourceLoad(Call& call, const ViewPtr& view, CefRequestHandler& requests) {
  const auto handler = ResourceHandlerOf(call, view, requests);
  if (!handler) {
    return;
  }
  const CefRefPtr<CefRequest> request = RequestOf(call);
  call.result = handler->OnBeforeResourceLoad(
      BrowserArgument(call, view), FrameArgument(call, view), Argument(call, 2, request), nullptr);
  AnswerText(call, request->GetURL().ToString() + " " +
                       request->GetHeaderByName("Accept-Language").ToString());
}

void ProtocolExecution(Call& call, const ViewPtr& view, CefRequestHandler& requests) {
  const auto handler = ResourceHandlerOf(call, view, requests);
  bool is_allowed = call.numbers[1] != 0;
  if (handler) {
    handler->OnProtocolExecution(BrowserArgument(call, view), FrameArgument(call, view),
                                 Argument(call, 2, RequestOf(call)), is_allowed);
  }
  call.outs[0] = is_allowed ? 1 : 0;
}

bool ProcessMessageReceived(Call& call, const ViewPtr& view) {
  const CefRefPtr<CefClient> client = view ? ClientOf(view) : nullptr;
  if (!client) {
    return false;
  }
  const CefRefPtr<CefProcessMessage> message =
      MakeMessage(TextArgument(call, 0), ParseFields(call.fields, call.field_count));
  call.result = client->OnProcessMessageReceived(
      BrowserArgument(call, view), FrameArgument(call, view),
      static_cast<cef_process_id_t>(call.numbers[0]), Argument(call, 2, message));
  return true;
}

constexpr auto kLifeSpan = &CefClient::GetLifeSpanHandler;
constexpr auto kLoad = &CefClient::GetLoadHandler;
constexpr auto kDisplay = &CefClient::GetDisplayHandler;
constexpr auto kRender = &CefClient::GetRenderHandler;
constexpr auto kRequest = &CefClient::GetRequestHandler;

constexpr PlayRow kRows[] = {
    {"CefLifeSpanHandler::OnAfterCreated", &With<CefLifeSpanHandler, kLifeSpan, &AfterCreated>},
    {"CefLifeSpanHandler::DoClose", &With<CefLifeSpanHandler, kLifeSpan, &DoClose>},
    {"CefLifeSpanHandler::OnBeforeClose", &With<CefLifeSpanHandler, kLifeSpan, &BeforeClose>},
    {"CefLifeSpanHandler::OnBeforePopup", &With<CefLifeSpanHandler, kLifeSpan, &BeforePopup>},
    {"CefLoadHandler::OnLoadingStateChange", &With<CefLoadHandler, kLoad, &LoadingStateChange>},
    {"CefLoadHandler::OnLoadError", &With<CefLoadHandler, kLoad, &LoadError>},
    {"CefDisplayHandler::OnAddressChange", &With<CefDisplayHandler, kDisplay, &AddressChange>},
    {"CefDisplayHandler::OnTitleChange", &With<CefDisplayHandler, kDisplay, &TitleChange>},
    {"CefDisplayHandler::OnStatusMessage", &With<CefDisplayHandler, kDisplay, &StatusMessage>},
    {"CefDisplayHandler::OnConsoleMessage", &With<CefDisplayHandler, kDisplay, &ConsoleMessage>},
    {"CefDownloadHandler::OnBeforeDownload",
     &With<CefDownloadHandler, &CefClient::GetDownloadHandler, &BeforeDownload>},
    {"CefJSDialogHandler::OnJSDialog",
     &With<CefJSDialogHandler, &CefClient::GetJSDialogHandler, &JsDialog>},
    {"CefRenderHandler::GetRootScreenRect", &With<CefRenderHandler, kRender, &RootScreenRect>},
    {"CefRenderHandler::GetViewRect", &With<CefRenderHandler, kRender, &ViewRect>},
    {"CefRenderHandler::GetScreenPoint", &With<CefRenderHandler, kRender, &ScreenPoint>},
    {"CefRequestHandler::OnBeforeBrowse", &With<CefRequestHandler, kRequest, &BeforeBrowse>},
    {"CefRequestHandler::OnRenderProcessTerminated",
     &With<CefRequestHandler, kRequest, &RenderProcessTerminated>},
    {"CefResourceRequestHandler::OnBeforeResourceLoad",
     &With<CefRequestHandler, kRequest, &BeforeResourceLoad>},
    {"CefResourceRequestHandler::OnProtocolExecution",
     &With<CefRequestHandler, kRequest, &ProtocolExecution>},
    {"CefClient::OnProcessMessageReceived", &ProcessMessageReceived},
};

}  // namespace

PlayRows ViewRows() {
  return {std::begin(kRows), std::end(kRows)};
}

}  // namespace standin
