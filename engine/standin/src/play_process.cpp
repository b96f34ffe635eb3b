#include "command_line.h"
#include "include/cef_process_message.h"
#include "include/cef_resource_handler.h"
#include "messages.h"
#include "neutral_classes.h"
#include "play.h"
#include "renderer.h"
#include "requests.h"
#include "runtime.h"
#include "threads.h"
#include "v8.h"

namespace standin {

namespace {

using Call = orbcef_standin_call;

CefRefPtr<CefCommandLine> LineOf(const Call& call) {
  const std::string type = TextArgument(call, 0);
  return type.empty() ? MakeCommandLine({"helper"}) : MakeCommandLine({"helper", "--type=" + type});
}

class Registrar : public CefSchemeRegistrar {
 public:
  explicit Registrar(Call& call) : _call(call) {}
  bool AddCustomScheme(const CefString& scheme_name, int options) override {
    AnswerText(_call, scheme_name.ToString() + " " + std::to_string(options));
    return true;
  }

 private:
  Call& _call;
};

bool BeforeCommandLineProcessing(Call& call, const ViewPtr&) {
  const CefRefPtr<CefApp> app = TheApp();
  if (!app) {
    return false;
  }
  const CefRefPtr<CefCommandLine> line = LineOf(call);
  app->OnBeforeCommandLineProcessing(TextArgument(call, 0), Argument(call, 0, line));
  AnswerText(call, line->GetCommandLineString().ToString());
  return true;
}

bool RegisterCustomSchemes(Call& call, const ViewPtr&) {
  const CefRefPtr<CefApp> app = TheApp();
  if (!app) {
    return false;
  }
  Registrar registrar(call);
  app->OnRegisterCustomSchemes(&registrar);
  return true;
}

bool ContextInitialized(Call&, const ViewPtr&) {
  const auto handler = TheBrowserProcessHandler();
  if (handler) {
    handler->OnContextInitialized();
  }
  return handler != nullptr;
}

bool BeforeChildProcessLaunch(Call& call, const ViewPtr&) {
  const auto handler = TheBrowserProcessHandler();
  if (!handler) {
    return false;
  }
  const CefRefPtr<CefCommandLine> line = LineOf(call);
  handler->OnBeforeChildProcessLaunch(Argument(call, 0, line));
  AnswerText(call, line->GetCommandLineString().ToString());
  return true;
}

CefRefPtr<CefRequest> RequestOf(const Call& call) {
  const std::string method = TextArgument(call, 1);
  return MakeRequest(TextArgument(call, 0), method.empty() ? "GET" : method);
}

CefRefPtr<CefResourceHandler> Create(Call& call, const ViewPtr& view) {
  const auto factory = FindFactory(TextArgument(call, 0));
  if (!factory) {
    return nullptr;
  }
  const CefRefPtr<CefBrowser> browser = view ? BrowserOf(view) : nullptr;
  const CefRefPtr<CefFrame> frame = view ? FrameOf(view) : nullptr;
  return factory->Create(Argument(call, 0, browser), Argument(call, 1, frame), "xortv",
                         Argument(call, 2, RequestOf(call)));
}

bool FactoryCreate(Call& call, const ViewPtr& view) {
  call.result = Create(call, view) ? 1 : 0;
  return FindFactory(TextArgument(call, 0)) != nullptr;
}

// The handler itself is always made on the IO thread; only the asked callback comes on the call's.
CefRefPtr<CefResourceHandler> MadeOnIo(Call& call, const ViewPtr& view) {
  CefRefPtr<CefResourceHandler> handler;
  Call plain = call;
  plain.nulls = 0;
  RunOn(TID_IO, [&] { handler = Create(plain, view); });
  return handler;
}

bool ResponseHeaders(Call& call, const ViewPtr& view) {
  const auto handler = MadeOnIo(call, view);
  if (!handler) {
    return false;
  }
  const CefRefPtr<CefResponse> response = MakeResponse();
  int64 length = 0;
  CefString redirect;
  handler->GetResponseHeaders(Argument(call, 0, response), length, redirect);
  call.outs[0] = response->GetStatus();
  call.outs[1] = static_cast<int32_t>(length);
  AnswerText(call, response->GetMimeType().ToString());
  return true;
}

bool Skip(Call& call, const ViewPtr& view) {
  const auto handler = MadeOnIo(call, view);
  if (!handler) {
    return false;
  }
  int64 skipped = 0;
  call.result = handler->Skip(call.numbers[0], skipped, nullptr);
  call.outs[0] = static_cast<int32_t>(skipped);
  return true;
}

template <void (*play)(Call&, const Stage&)>
bool OnStage(Call& call, const ViewPtr&) {
  const Stage stage = RendererStage();
  if (!stage.handler) {
    return false;
  }
  play(call, stage);
  return true;
}

void BrowserCreated(Call& call, const Stage& stage) {
  stage.handler->OnBrowserCreated(Argument(call, 0, BrowserOf(stage.view)), nullptr);
}

void BrowserDestroyed(Call& call, const Stage& stage) {
  stage.handler->OnBrowserDestroyed(Argument(call, 0, BrowserOf(stage.view)));
}

void ContextCreated(Call& call, const Stage& stage) {
  stage.handler->OnContextCreated(Argument(call, 0, BrowserOf(stage.view)),
                                  Argument(call, 1, FrameOf(stage.view)),
                                  Argument(call, 2, stage.context));
}

void ContextReleased(Call& call, const Stage& stage) {
  stage.handler->OnContextReleased(Argument(call, 0, BrowserOf(stage.view)),
                                   Argument(call, 1, FrameOf(stage.view)),
                                   Argument(call, 2, stage.context));
}

void UncaughtException(Call& call, const Stage& stage) {
  stage.handler->OnUncaughtException(
      Argument(call, 0, BrowserOf(stage.view)), Argument(call, 1, FrameOf(stage.view)),
      Argument(call, 2, stage.context), Argument(call, 3, MakeException(TextArgument(call, 0))),
      Argument(call, 4, MakeStackTrace()));
}

void MessageInRenderer(Call& call, const Stage& stage) {
  const auto message =
      MakeMessage(TextArgument(call, 0), ParseFields(call.fields, call.field_count));
  call.result = stage.handler->OnProcessMessageReceived(Argument(call, 0, BrowserOf(stage.view)),
                                                        Argument(call, 1, FrameOf(stage.view)),
                                                        PID_BROWSER, Argument(call, 2, message));
}

constexpr PlayRow kRows[] = {
    {"CefApp::OnBeforeCommandLineProcessing", &BeforeCommandLineProcessing},
    {"CefApp::OnRegisterCustomSchemes", &RegisterCustomSchemes},
    {"CefBrowserProcessHandler::OnContextInitialized", &ContextInitialized},
    {"CefBrowserProcessHandler::OnBeforeChildProcessLaunch", &BeforeChildProcessLaunch},
    {"CefSchemeHandlerFactory::Create", &FactoryCreate},
    {"CefResourceHandler::GetResponseHeaders", &ResponseHeaders},
    {"CefResourceHandler::Skip", &Skip},
    {"CefRenderProcessHandler::OnBrowserCreated", &OnStage<&BrowserCreated>},
    {"CefRenderProcessHandler::OnBrowserDestroyed", &OnStage<&BrowserDestroyed>},
    {"CefRenderProcessHandler::OnContextCreated", &OnStage<&ContextCreated>},
    {"CefRenderProcessHandler::OnContextReleased", &OnStage<&ContextReleased>},
    {"CefRenderProcessHandler::OnUncaughtException", &OnStage<&UncaughtException>},
    {"CefRenderProcessHandler::OnProcessMessageReceived", &OnStage<&MessageInRenderer>},
};

}  // namespace

PlayRows ProcessRows() {
  return {std::begin(kRows), std::end(kRows)};
}

}  // namespace standin
