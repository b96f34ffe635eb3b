// The callbacks that a test can play: each row calls one method of the client, with the arguments
// and nulls of the call, on the call's thread.
#include "play.h"

#include <cstring>
#include <string>

#include "script.h"
#include "threads.h"

namespace standin {

std::string TextArgument(const orbcef_standin_call& call, int index) {
  const char* const text = call.texts[index];
  return text ? text : std::string();
}

void AnswerText(orbcef_standin_call& call, const std::string& text) {
  const size_t length = std::min(text.size(), sizeof(call.text) - 1);
  std::memcpy(call.text, text.data(), length);
  call.text[length] = '\0';
}

namespace {

const PlayRow* FindRow(const std::string& name) {
  for (const auto& rows : {ViewRows(), InputRows(), ProcessRows()}) {
    for (const PlayRow* row = rows.first; row != rows.second; ++row) {
      if (name == row->name) {
        return row;
      }
    }
  }
  return nullptr;
}

}  // namespace

}  // namespace standin

extern "C" int32_t orbcef_standin_play(orbcef_standin_call* call) {
  const standin::PlayRow* const row = standin::FindRow(call->name);
  if (!row) {
    return 0;
  }
  const standin::ViewPtr view = standin::FindView(call->browser);
  bool is_played = false;
  const bool has_thread = standin::RunOn(call->thread, [&] { is_played = row->play(*call, view); });
  return has_thread && is_played ? 1 : 0;
}
