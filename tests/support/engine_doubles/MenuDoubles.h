// A context menu as the engine makes it: the spot that was clicked, and the model to be filled.
#ifndef ORBCEF_TESTS_MENU_DOUBLES_H
#define ORBCEF_TESTS_MENU_DOUBLES_H

#include <string>
#include <vector>

#include "NullMenuModel.h"
#include "include/cef_context_menu_handler.h"

namespace engine_doubles {

// A click that answers from plain fields which a test sets.
class ContextMenuParamsDouble : public CefContextMenuParams {
 public:
  int GetXCoord() override { return 0; }
  int GetYCoord() override { return 0; }
  TypeFlags GetTypeFlags() override { return static_cast<TypeFlags>(type_flags); }
  CefString GetLinkUrl() override { return link_url; }
  CefString GetUnfilteredLinkUrl() override { return CefString(); }
  CefString GetSourceUrl() override { return CefString(); }
  bool HasImageContents() override { return false; }
  CefString GetTitleText() override { return CefString(); }
  CefString GetPageUrl() override { return CefString(); }
  CefString GetFrameUrl() override { return CefString(); }
  CefString GetFrameCharset() override { return CefString(); }
  MediaType GetMediaType() override { return CM_MEDIATYPE_NONE; }
  MediaStateFlags GetMediaStateFlags() override { return CM_MEDIAFLAG_NONE; }
  CefString GetSelectionText() override { return CefString(); }
  CefString GetMisspelledWord() override { return CefString(); }
  bool GetDictionarySuggestions(std::vector<CefString>&) override { return false; }
  bool IsEditable() override { return (type_flags & CM_TYPEFLAG_EDITABLE) != 0; }
  bool IsSpellCheckEnabled() override { return false; }
  EditStateFlags GetEditStateFlags() override { return static_cast<EditStateFlags>(edit_flags); }
  bool IsCustomMenu() override { return false; }

  int type_flags = CM_TYPEFLAG_NONE;
  int edit_flags = CM_EDITFLAG_NONE;
  std::string link_url;

 private:
  IMPLEMENT_REFCOUNTING(ContextMenuParamsDouble);
};

// Holds what was added, one line an item: "26503 Previous", "26504 Next (disabled)", "--". Starts
// with an item of the engine's.
class MenuModelDouble : public NullMenuModel {
 public:
  bool Clear() override {
    _items.clear();
    return true;
  }
  Count GetCount() override { return static_cast<Count>(_items.size()); }
  bool AddSeparator() override {
    _items.push_back({0, "", true});
    return true;
  }
  bool AddItem(int command_id, const CefString& label) override {
    _items.push_back({command_id, label.ToString(), true});
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

  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (const Item& item : _items) {
      lines.push_back(item.id ? std::to_string(item.id) + " " + item.label +
                                    (item.is_enabled ? "" : " (disabled)")
                              : "--");
    }
    return lines;
  }

 private:
  struct Item {
    int id;
    std::string label;
    bool is_enabled;
  };

  std::vector<Item> _items = {{MENU_ID_PRINT, "Print", true}};
};

}  // namespace engine_doubles

#endif  // ORBCEF_TESTS_MENU_DOUBLES_H
