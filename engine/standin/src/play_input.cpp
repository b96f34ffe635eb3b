// The callbacks for keys and context menus.
#include <iterator>
#include <utility>
#include <vector>

#include "include/cef_client.h"
#include "include/cef_context_menu_handler.h"
#include "include/cef_keyboard_handler.h"
#include "include/cef_menu_model.h"
#include "neutral_classes.h"
#include "play.h"

namespace standin {

namespace {

using Call = orbcef_standin_call;
// The interfaces count in other types.
using Count = decltype(std::declval<CefMenuModel&>().GetCount());

// The spot that was clicked.
class MenuParams : public engine_neutral::NeutralContextMenuParams {
 public:
  explicit MenuParams(const Call& call) : _call(call) {}
  TypeFlags GetTypeFlags() override { return static_cast<TypeFlags>(_call.numbers[0]); }
  EditStateFlags GetEditStateFlags() override {
    return static_cast<EditStateFlags>(_call.numbers[1]);
  }
  CefString GetLinkUrl() override { return TextArgument(_call, 0); }

 private:
  const Call& _call;

  STANDIN_OBJECT(MenuParams);
};

// Begins with an item of the engine's own.
class MenuModel : public engine_neutral::NeutralMenuModel {
 public:
  bool Clear() override {
    _items.clear();
    return true;
  }
  Count GetCount() override { return static_cast<Count>(_items.size()); }
  bool AddSeparator() override {
    _items.push_back({kSeparator, true});
    return true;
  }
  bool AddItem(int command_id, const CefString&) override {
    _items.push_back({command_id, true});
    return true;
  }
  bool SetEnabled(int command_id, bool enabled) override {
    for (Item& item : _items) {
      if (item.id == command_id) {
        item.is_enabled = enabled;
        return true;
      }
    }
    return false;
  }

  std::string Describe() const {
    std::string text;
    for (const Item& item : _items) {
      const std::string id = item.id == kSeparator ? "--" : std::to_string(item.id);
      text += (text.empty() ? "" : " ") + (item.is_enabled ? id : "(" + id + ")");
    }
    return text;
  }

 private:
  static constexpr int kSeparator = -1;

  struct Item {
    int id;
    bool is_enabled;
  };

  std::vector<Item> _items = {{MENU_ID_PRINT, true}};

  STANDIN_OBJECT(MenuModel);
};

void BeforeContextMenu(Call& call, const ViewPtr& view, CefContextMenuHandler& handler) {
  const CefRefPtr<CefContextMenuParams> params = new MenuParams(call);
  const CefRefPtr<MenuModel> model = new MenuModel();
  handler.OnBeforeContextMenu(BrowserArgument(call, view), FrameArgument(call, view),
                              Argument(call, 2, params),
                              Argument(call, 3, CefRefPtr<CefMenuModel>(model)));
  AnswerText(call, model->Describe());
}

void ContextMenuCommand(Call& call, const ViewPtr& view, CefContextMenuHandler& handler) {
  const CefRefPtr<CefContextMenuParams> params = new MenuParams(call);
  call.result = handler.OnContextMenuCommand(BrowserArgument(call, view), FrameArgument(call, view),
                                             Argument(call, 2, params), call.numbers[2],
                                             static_cast<cef_event_flags_t>(call.numbers[3]));
}

CefKeyEvent KeyOf(const Call& call) {
  CefKeyEvent event;
  event.type = static_cast<cef_key_event_type_t>(call.numbers[0]);
  event.windows_key_code = call.numbers[1];
  event.modifiers = static_cast<uint32>(call.numbers[2]);
  return event;
}

void PreKeyEvent(Call& call, const ViewPtr& view, CefKeyboardHandler& handler) {
  bool is_shortcut = false;
  call.result = handler.OnPreKeyEvent(BrowserArgument(call, view), KeyOf(call), {}, &is_shortcut);
  call.outs[0] = is_shortcut ? 1 : 0;
}

void KeyEvent(Call& call, const ViewPtr& view, CefKeyboardHandler& handler) {
  call.result = handler.OnKeyEvent(BrowserArgument(call, view), KeyOf(call), {});
}

constexpr auto kMenu = &CefClient::GetContextMenuHandler;
constexpr auto kKeyboard = &CefClient::GetKeyboardHandler;

constexpr PlayRow kRows[] = {
    {"CefContextMenuHandler::OnBeforeContextMenu",
     &With<CefContextMenuHandler, kMenu, &BeforeContextMenu>},
    {"CefContextMenuHandler::OnContextMenuCommand",
     &With<CefContextMenuHandler, kMenu, &ContextMenuCommand>},
    {"CefKeyboardHandler::OnPreKeyEvent", &With<CefKeyboardHandler, kKeyboard, &PreKeyEvent>},
    {"CefKeyboardHandler::OnKeyEvent", &With<CefKeyboardHandler, kKeyboard, &KeyEvent>},
};

}  // namespace

PlayRows InputRows() {
  return {std::begin(kRows), std::end(kRows)};
}

}  // namespace standin
