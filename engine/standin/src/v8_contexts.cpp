#include <vector>

#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"
#include "orbcef_standin.h"
#include "script.h"
#include "threads.h"
#include "v8.h"

namespace standin {

namespace {

class StandinV8Exception : public engine_neutral::NeutralV8Exception {
 public:
  explicit StandinV8Exception(const std::string& message) : _message(message) {}
  CefString GetMessage() override { return _message; }
  CefString GetSourceLine() override { return "source()"; }
  CefString GetScriptResourceName() override { return "stand-in.js"; }
  int GetLineNumber() override { return 1; }

 private:
  const CefString _message;

  STANDIN_OBJECT(StandinV8Exception);
};

class StandinStackFrame : public engine_neutral::NeutralV8StackFrame {
 public:
  bool IsValid() override { return true; }
  CefString GetScriptName() override { return "stand-in.js"; }
  CefString GetScriptNameOrSourceURL() override { return "stand-in.js"; }
  CefString GetFunctionName() override { return "play"; }
  int GetLineNumber() override { return 7; }
  int GetColumn() override { return 1; }

 private:
  STANDIN_OBJECT(StandinStackFrame);
};

class StandinStackTrace : public engine_neutral::NeutralV8StackTrace {
 public:
  bool IsValid() override { return true; }
  int GetFrameCount() override { return 2; }
  // The second one is missing.
  CefRefPtr<CefV8StackFrame> GetFrame(int index) override {
    return index == 0 ? new StandinStackFrame() : nullptr;
  }

 private:
  STANDIN_OBJECT(StandinStackTrace);
};

class StandinContext;

std::vector<CefRefPtr<CefV8Context>>& Entered() {
  thread_local std::vector<CefRefPtr<CefV8Context>> entered;
  return entered;
}

class StandinContext : public engine_neutral::NeutralV8Context {
 public:
  explicit StandinContext(ViewPtr view)
      : _view(std::move(view)), _global(MakeScriptValue("object:")) {}

  bool IsValid() override { return _global != nullptr; }
  CefRefPtr<CefBrowser> GetBrowser() override { return BrowserOf(_view); }
  CefRefPtr<CefFrame> GetFrame() override { return FrameOf(_view); }
  CefRefPtr<CefV8Value> GetGlobal() override { return _global; }
  bool Enter() override {
    if (!IsValid()) {
      return false;
    }
    Entered().emplace_back(this);
    return true;
  }
  bool Exit() override {
    if (Entered().empty() || Entered().back().get() != this) {
      return false;
    }
    Entered().pop_back();
    return true;
  }
  bool IsSame(CefRefPtr<CefV8Context> that) override { return that.get() == this; }
  bool Eval(const CefString& code, const CefString& script_url, int start_line,
            CefRefPtr<CefV8Value>& retval, CefRefPtr<CefV8Exception>& exception) override {
    Note("eval", script_url.ToString() + ":" + std::to_string(start_line));
    Note("eval.code", code.ToString());
    if (!IsValid() || TakeFault("eval")) {
      exception = MakeException("the script failed");
      return false;
    }
    retval = MakeScriptValue("undefined:");
    return true;
  }
  void LetGo() { _global = nullptr; }

 private:
  const ViewPtr _view;
  CefRefPtr<CefV8Value> _global;

  STANDIN_OBJECT(StandinContext);
};

struct Extension {
  std::string name;
  Held<CefV8Handler> handler;
};

// Renderer thread only.
std::vector<Extension>& Extensions() {
  static auto& extensions = *new std::vector<Extension>();
  return extensions;
}

bool CallNative(const std::string& name, const char* const* fields, int count) {
  if (Extensions().empty()) {
    return false;
  }
  CefV8ValueList arguments;
  for (int i = 0; i < count; ++i) {
    arguments.push_back(MakeScriptValue(fields[i]));
  }
  CefRefPtr<CefV8Value> result;
  CefString exception;
  const Held<CefV8Handler> handler = Extensions().front().handler;
  const bool is_known =
      handler->Execute(name, MakeScriptValue("object:"), arguments, result, exception);
  if (!exception.empty()) {
    Note("native", name + " ! " + exception.ToString());
  } else {
    Note("native", name + (is_known ? " = " + DescribeScriptValue(result) : " is unknown"));
  }
  return true;
}

}  // namespace

CefRefPtr<CefV8Context> MakeContext(const ViewPtr& view) {
  return new StandinContext(view);
}

void ReleaseContext(const CefRefPtr<CefV8Context>& context) {
  static_cast<StandinContext*>(context.get())->LetGo();
}

CefRefPtr<CefV8Exception> MakeException(const std::string& message) {
  return new StandinV8Exception(message);
}

CefRefPtr<CefV8StackTrace> MakeStackTrace() {
  return new StandinStackTrace();
}

void DropExtensions() {
  Extensions().clear();
}

}  // namespace standin

extern "C" {

cef_v8context_t* cef_v8context_get_current_context() {
  if (standin::Entered().empty() || standin::TakeFault("v8_context")) {
    return nullptr;
  }
  return engine_glue::ToC(standin::Entered().back());
}
cef_v8context_t* cef_v8context_get_entered_context() {
  return cef_v8context_get_current_context();
}
int cef_v8context_in_context() {
  return standin::Entered().empty() ? 0 : 1;
}

int cef_register_extension(const cef_string_t* extension_name, const cef_string_t* javascript_code,
                           cef_v8handler_t* handler) {
  const CefRefPtr<CefV8Handler> taken = engine_glue::FromC(handler);
  if (!standin::IsOn(TID_RENDERER)) {
    return 0;
  }
  const std::string name = CefString(extension_name).ToString();
  standin::Note("extension", name);
  standin::Note("extension.code", CefString(javascript_code).ToString());
  standin::Extensions().push_back(
      {name, standin::Held<CefV8Handler>("client CefV8Handler", taken)});
  return 1;
}

int32_t orbcef_standin_native(const char* name, const char* const* arguments, int32_t count) {
  return standin::CallNative(name, arguments, count) ? 1 : 0;
}

}  // extern "C"
