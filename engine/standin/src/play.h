// What the two tables of playable callbacks share.
#pragma once

#include <string>
#include <utility>

#include "include/cef_base.h"
#include "include/cef_client.h"
#include "orbcef_standin.h"
#include "views.h"

namespace standin {

// False without a view or handler to call. `view` may be null.
struct PlayRow {
  const char* name;
  bool (*play)(orbcef_standin_call& call, const ViewPtr& view);
};
using PlayRows = std::pair<const PlayRow*, const PlayRow*>;

// The callbacks of a view's client, those of its keys and menus, and those of a process.
PlayRows ViewRows();
PlayRows InputRows();
PlayRows ProcessRows();

// The object argument number `index`, null if the call wants it so.
template <class Class>
CefRefPtr<Class> Argument(const orbcef_standin_call& call, int index, CefRefPtr<Class> object) {
  return call.nulls & (1u << index) ? nullptr : object;
}

// The first two of most callbacks.
inline CefRefPtr<CefBrowser> BrowserArgument(const orbcef_standin_call& call, const ViewPtr& view) {
  return Argument(call, 0, BrowserOf(view));
}
inline CefRefPtr<CefFrame> FrameArgument(const orbcef_standin_call& call, const ViewPtr& view) {
  return Argument(call, 1, FrameOf(view));
}

// The handler is asked for on the call's thread, as the engine does.
template <class Handler, CefRefPtr<Handler> (CefClient::*getter)(),
          void (*play)(orbcef_standin_call&, const ViewPtr&, Handler&)>
bool With(orbcef_standin_call& call, const ViewPtr& view) {
  const CefRefPtr<CefClient> client = view ? ClientOf(view) : nullptr;
  const CefRefPtr<Handler> handler = client ? (client.get()->*getter)() : nullptr;
  if (!handler) {
    return false;
  }
  play(call, view, *handler);
  return true;
}

std::string TextArgument(const orbcef_standin_call& call, int index);
void AnswerText(orbcef_standin_call& call, const std::string& text);

}  // namespace standin
