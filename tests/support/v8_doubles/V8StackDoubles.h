// The stack trace of an uncaught exception, and a document node, without an engine.
//
// Counted like any engine object; one thread.

#ifndef V8_DOUBLES_V8_STACK_DOUBLES_H
#define V8_DOUBLES_V8_STACK_DOUBLES_H

#include <string>
#include <utility>
#include <vector>

#include "include/cef_dom.h"
#include "include/cef_v8.h"

namespace v8_doubles {

class V8StackFrameDouble : public CefV8StackFrame {
 public:
  V8StackFrameDouble(std::string function, std::string script, int line)
      : _function(std::move(function)), _script(std::move(script)), _line(line) {}

  bool valid = true;
  bool eval = false;

  bool IsValid() override { return valid; }
  // Another text than the source URL, so that a reader of the wrong one is found out.
  CefString GetScriptName() override { return "script-name-of-" + _script; }
  CefString GetScriptNameOrSourceURL() override { return _script; }
  CefString GetFunctionName() override { return _function; }
  int GetLineNumber() override { return _line; }
  int GetColumn() override { return 0; }
  bool IsEval() override { return eval; }
  bool IsConstructor() override { return false; }

 private:
  const std::string _function;
  const std::string _script;
  const int _line;

  IMPLEMENT_REFCOUNTING(V8StackFrameDouble);
};

class V8StackTraceDouble : public CefV8StackTrace {
 public:
  explicit V8StackTraceDouble(std::vector<CefRefPtr<CefV8StackFrame>> frames)
      : _frames(std::move(frames)) {}

  bool valid = true;

  bool IsValid() override { return valid; }
  int GetFrameCount() override { return static_cast<int>(_frames.size()); }
  CefRefPtr<CefV8StackFrame> GetFrame(int index) override {
    return _frames.at(static_cast<std::size_t>(index));
  }

 private:
  const std::vector<CefRefPtr<CefV8StackFrame>> _frames;

  IMPLEMENT_REFCOUNTING(V8StackTraceDouble);
};

class DomNodeDouble : public CefDOMNode {
 public:
  explicit DomNodeDouble(bool is_form_control) : _form_control(is_form_control) {}

  Type GetType() override { return DOM_NODE_TYPE_ELEMENT; }
  bool IsText() override { return false; }
  bool IsElement() override { return true; }
  // The opposite of the answer that counts.
  bool IsEditable() override { return !_form_control; }
  bool IsFormControlElement() override { return _form_control; }
  CefString GetFormControlElementType() override { return CefString(); }
  bool IsSame(CefRefPtr<CefDOMNode> that) override { return that.get() == this; }
  CefString GetName() override { return CefString(); }
  CefString GetValue() override { return CefString(); }
  bool SetValue(const CefString&) override { return false; }
  CefString GetAsMarkup() override { return CefString(); }
  CefRefPtr<CefDOMDocument> GetDocument() override { return nullptr; }
  CefRefPtr<CefDOMNode> GetParent() override { return nullptr; }
  CefRefPtr<CefDOMNode> GetPreviousSibling() override { return nullptr; }
  CefRefPtr<CefDOMNode> GetNextSibling() override { return nullptr; }
  bool HasChildren() override { return false; }
  CefRefPtr<CefDOMNode> GetFirstChild() override { return nullptr; }
  CefRefPtr<CefDOMNode> GetLastChild() override { return nullptr; }
  CefString GetElementTagName() override { return CefString(); }
  bool HasElementAttributes() override { return false; }
  bool HasElementAttribute(const CefString&) override { return false; }
  CefString GetElementAttribute(const CefString&) override { return CefString(); }
  void GetElementAttributes(AttributeMap&) override {}
  bool SetElementAttribute(const CefString&, const CefString&) override { return false; }
  CefString GetElementInnerText() override { return CefString(); }
  CefRect GetElementBounds() override { return CefRect(); }

 private:
  const bool _form_control;

  IMPLEMENT_REFCOUNTING(DomNodeDouble);
};

}  // namespace v8_doubles

#endif  // V8_DOUBLES_V8_STACK_DOUBLES_H
