// The engine without the module: the least code that loads the same page from the same scheme and
// brings the same messages to the same C callback. It is its own sub-process.
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "Session.h"
#include "include/cef_app.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/cef_parser.h"
#include "include/cef_process_message.h"
#include "include/cef_render_process_handler.h"
#include "include/cef_request.h"
#include "include/cef_scheme.h"
#include "include/cef_task.h"
#include "include/cef_v8.h"
#include "include/wrapper/cef_stream_resource_handler.h"

namespace {

constexpr char kExtension[] = R"(
var xocef;
if (!xocef) xocef = {};
(function () {
  'use strict';
  native function __sendString();
  xocef.sendString = function (text) {
    const position = { url: location.href, line: 0, column: 0 };
    __sendString([text], position, { recordable: false, captureAll: true });
  };
})();
)";

// --- render process ---

class Natives : public CefV8Handler {
 public:
  bool Execute(const CefString& name, CefRefPtr<CefV8Value> object, const CefV8ValueList& arguments,
               CefRefPtr<CefV8Value>& retval, CefString& exception) override {
    CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create("SendString");
    CefRefPtr<CefListValue> items = message->GetArgumentList();
    items->SetSize(3);
    CefRefPtr<CefListValue> strings = CefListValue::Create();
    const int count = arguments[0]->GetArrayLength();
    strings->SetSize(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
      strings->SetString(static_cast<size_t>(i), arguments[0]->GetValue(i)->GetStringValue());
    }
    CefRefPtr<CefDictionaryValue> position = CefDictionaryValue::Create();
    position->SetString("url", arguments[1]->GetValue("url")->GetStringValue());
    position->SetInt("line", arguments[1]->GetValue("line")->GetIntValue());
    position->SetInt("column", arguments[1]->GetValue("column")->GetIntValue());
    CefRefPtr<CefDictionaryValue> options = CefDictionaryValue::Create();
    options->SetBool("recordable", arguments[2]->GetValue("recordable")->GetBoolValue());
    options->SetBool("captureAll", arguments[2]->GetValue("captureAll")->GetBoolValue());
    items->SetList(0, strings);
    items->SetDictionary(1, position);
    items->SetDictionary(2, options);
    CefV8Context::GetCurrentContext()->GetBrowser()->GetMainFrame()->SendProcessMessage(PID_BROWSER,
                                                                                        message);
    return true;
  }

 private:
  IMPLEMENT_REFCOUNTING(Natives);
};

class Renderer : public CefRenderProcessHandler {
 public:
  void OnWebKitInitialized() override {
    CefRegisterExtension("v8/bench", kExtension, new Natives());
  }

 private:
  IMPLEMENT_REFCOUNTING(Renderer);
};

// --- browser process ---

class Files : public CefSchemeHandlerFactory {
 public:
  explicit Files(const std::string& roots) : _roots(roots) {}

  CefRefPtr<CefResourceHandler> Create(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                       const CefString& scheme_name,
                                       CefRefPtr<CefRequest> request) override {
    CefURLParts parts;
    CefParseURL(request->GetURL(), parts);
    const std::string relative =
        "/" + CefString(&parts.host).ToString() + CefString(&parts.path).ToString();
    for (size_t begin = 0; begin < _roots.size();) {
      const size_t end = std::min(_roots.find(';', begin), _roots.size());
      CefRefPtr<CefStreamReader> stream =
          CefStreamReader::CreateForFile(_roots.substr(begin, end - begin) + relative);
      if (stream) {
        return new CefStreamResourceHandler("text/html", stream);
      }
      begin = end + 1;
    }
    return nullptr;
  }

 private:
  const std::string _roots;
  IMPLEMENT_REFCOUNTING(Files);
};

class Client : public CefClient,
               public CefLifeSpanHandler,
               public CefLoadHandler,
               public bench::View {
 public:
  explicit Client(bench::Session& session) : _session(session) {}

  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefLoadHandler> GetLoadHandler() override { return this; }

  bool OnProcessMessageReceived(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                CefProcessId source_process,
                                CefRefPtr<CefProcessMessage> message) override {
    CefRefPtr<CefListValue> strings = message->GetArgumentList()->GetList(0);
    std::vector<std::string> texts(strings->GetSize());
    std::vector<orbcefstring_c> records(texts.size());
    std::vector<const orbcefstring_c*> pointers(texts.size());
    for (size_t i = 0; i < texts.size(); ++i) {
      texts[i] = strings->GetString(i).ToString();
      records[i] = {texts[i].data(), texts[i].size(), nullptr};
      pointers[i] = &records[i];
    }
    bench::Session::OnStrings(&_session, pointers.data(), static_cast<int32_t>(pointers.size()));
    return true;
  }
  void OnLoadingStateChange(CefRefPtr<CefBrowser> browser, bool is_loading, bool can_go_back,
                            bool can_go_forward) override {
    if (!is_loading) {
      _session.OnLoadEnd();
    }
  }
  void OnAfterCreated(CefRefPtr<CefBrowser> browser) override { _browser = browser; }
  void OnBeforeClose(CefRefPtr<CefBrowser> browser) override {
    _browser = nullptr;
    _session.OnClosed();
  }

  // Both only after the load's end, so after OnAfterCreated.
  void Execute(const std::string& code) override {
    _browser->GetMainFrame()->ExecuteJavaScript(code, "", 0);
  }
  void Close() { _browser->GetHost()->CloseBrowser(true); }

 private:
  bench::Session& _session;
  CefRefPtr<CefBrowser> _browser;
  IMPLEMENT_REFCOUNTING(Client);
};

class Opening : public CefTask {
 public:
  Opening(CefRefPtr<Client> client, unsigned long parent) : _client(client), _parent(parent) {}
  void Execute() override {
    CefWindowInfo window;
    window.SetAsChild(_parent, CefRect(0, 0, 800, 600));
    CefBrowserHost::CreateBrowserSync(window, _client, bench::kPageUrl, CefBrowserSettings(),
                                      nullptr, nullptr);
  }

 private:
  const CefRefPtr<Client> _client;
  const unsigned long _parent;
  IMPLEMENT_REFCOUNTING(Opening);
};

class App : public CefApp, public CefBrowserProcessHandler {
 public:
  explicit App(const std::string& roots) : _roots(roots) {}

  CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() override { return this; }
  CefRefPtr<CefRenderProcessHandler> GetRenderProcessHandler() override { return new Renderer(); }
  void OnBeforeCommandLineProcessing(const CefString& process_type,
                                     CefRefPtr<CefCommandLine> command_line) override {
    command_line->AppendSwitch("no-zygote");
    command_line->AppendSwitchWithValue("disable-features", "SpareRendererForSitePerProcess");
  }
  void OnRegisterCustomSchemes(CefRawPtr<CefSchemeRegistrar> registrar) override {
    registrar->AddCustomScheme("xortv", CEF_SCHEME_OPTION_STANDARD | CEF_SCHEME_OPTION_SECURE |
                                            CEF_SCHEME_OPTION_CORS_ENABLED |
                                            CEF_SCHEME_OPTION_FETCH_ENABLED);
  }
  void OnContextInitialized() override {
    CefRegisterSchemeHandlerFactory("xortv", "webapps", new Files(_roots));
  }

 private:
  const std::string _roots;
  IMPLEMENT_REFCOUNTING(App);
};

CefSettings Settings(const bench::Options& options, const char* program) {
  CefSettings settings;
  settings.no_sandbox = 1;
  settings.multi_threaded_message_loop = 1;
  settings.command_line_args_disabled = 1;
  settings.log_severity = LOGSEVERITY_DISABLE;
  settings.uncaught_exception_stack_size = 20;
  settings.background_color = 0xFFFFFFFF;
  CefString(&settings.browser_subprocess_path) = program;
  CefString(&settings.cache_path) = options.profile + "/WebCache";
  CefString(&settings.locale) = "en-US";
  CefString(&settings.accept_language_list) = "en-US";
  return settings;
}

bool Run(bench::Session& session, CefRefPtr<Client> client) {
  const unsigned long window = bench::OpenWindow();
  if (!window || !CefPostTask(TID_UI, new Opening(client, window)) || !session.Travel(*client)) {
    return false;
  }
  client->Close();
  return session.WaitForClosed();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::string(argv[1]).rfind("--type=", 0) == 0) {
    return CefExecuteProcess(CefMainArgs(argc, argv), new App(""), nullptr);
  }
  const bench::Options options = bench::ParseOptions(argc, argv);
  bench::Session session(options);
  if (!CefInitialize(CefMainArgs(), Settings(options, argv[0]), new App(options.roots), nullptr)) {
    std::printf("FAILED the engine did not start\n");
    return 1;
  }
  CefRefPtr<Client> client = new Client(session);
  const bool done = Run(session, client);
  client = nullptr;
  CefShutdown();
  return session.Report() && done ? 0 : 1;
}
