// A V8 context without V8: it keeps what is evaluated in it and answers as the test says.
//
// Counted like any engine object; one thread.

#ifndef V8_DOUBLES_V8_CONTEXT_DOUBLE_H
#define V8_DOUBLES_V8_CONTEXT_DOUBLE_H

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_task.h"
#include "include/cef_v8.h"

namespace v8_doubles {

class V8ExceptionDouble : public CefV8Exception {
 public:
  explicit V8ExceptionDouble(std::string words) : _words(std::move(words)) {}

  CefString GetMessage() override { return _words; }
  CefString GetSourceLine() override { return CefString(); }
  CefString GetScriptResourceName() override { return CefString(); }
  int GetLineNumber() override { return 0; }
  int GetStartPosition() override { return 0; }
  int GetEndPosition() override { return 0; }
  int GetStartColumn() override { return 0; }
  int GetEndColumn() override { return 0; }

 private:
  const std::string _words;

  IMPLEMENT_REFCOUNTING(V8ExceptionDouble);
};

// How a script ends.
struct Outcome {
  bool result = true;
  CefRefPtr<CefV8Value> value;
  CefRefPtr<CefV8Exception> exception;
};

struct Evaluation {
  std::string code;
  std::string script_name;
  int start_line;
  // Whether the context was entered at that moment.
  bool entered;
};

class V8ContextDouble : public CefV8Context {
 public:
  V8ContextDouble(CefRefPtr<CefBrowser> owner, CefRefPtr<CefFrame> shown)
      : browser(std::move(owner)), frame(std::move(shown)) {}

  bool valid = true;
  bool lets_enter = true;
  CefRefPtr<CefBrowser> browser;
  CefRefPtr<CefFrame> frame;
  // By script name; a script that is not listed runs well and leaves nothing.
  std::map<std::string, Outcome> outcomes;
  std::vector<Evaluation> evaluations;
  int depth = 0;
  int exits = 0;

  // The names of the evaluated scripts, in their order.
  std::vector<std::string> ScriptNames() const {
    std::vector<std::string> names;
    for (const Evaluation& evaluation : evaluations) {
      names.push_back(evaluation.script_name);
    }
    return names;
  }

  CefRefPtr<CefTaskRunner> GetTaskRunner() override { return nullptr; }
  bool IsValid() override { return valid; }
  CefRefPtr<CefBrowser> GetBrowser() override { return browser; }
  CefRefPtr<CefFrame> GetFrame() override { return frame; }
  CefRefPtr<CefV8Value> GetGlobal() override { return nullptr; }
  bool Enter() override {
    depth += lets_enter ? 1 : 0;
    return lets_enter;
  }
  bool Exit() override {
    ++exits;
    --depth;
    return true;
  }
  bool IsSame(CefRefPtr<CefV8Context> that) override { return that.get() == this; }
  bool Eval(const CefString& code, const CefString& script_url, int start_line,
            CefRefPtr<CefV8Value>& retval, CefRefPtr<CefV8Exception>& exception) override {
    evaluations.push_back({code.ToString(), script_url.ToString(), start_line, depth > 0});
    const auto outcome = outcomes.find(script_url.ToString());
    if (outcome == outcomes.end()) {
      return true;
    }
    retval = outcome->second.value;
    exception = outcome->second.exception;
    return outcome->second.result;
  }

 private:
  IMPLEMENT_REFCOUNTING(V8ContextDouble);
};

}  // namespace v8_doubles

#endif  // V8_DOUBLES_V8_CONTEXT_DOUBLE_H
