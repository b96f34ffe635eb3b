// What the two tables of playable callbacks share.
#pragma once

#include <string>
#include <utility>

#include "include/cef_base.h"
#include "orbcef_standin.h"
#include "views.h"

namespace standin {

// False without a view or handler to call. `view` may be null.
struct PlayRow {
  const char* name;
  bool (*play)(orbcef_standin_call& call, const ViewPtr& view);
};
using PlayRows = std::pair<const PlayRow*, const PlayRow*>;

// The callbacks of a view's client, and those of a process.
PlayRows ViewRows();
PlayRows ProcessRows();

// The object argument number `index`, null if the call wants it so.
template <class Class>
CefRefPtr<Class> Argument(const orbcef_standin_call& call, int index, CefRefPtr<Class> object) {
  return call.nulls & (1u << index) ? nullptr : object;
}

std::string TextArgument(const orbcef_standin_call& call, int index);
void AnswerText(orbcef_standin_call& call, const std::string& text);

}  // namespace standin
