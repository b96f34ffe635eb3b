// A menu model that holds nothing and refuses everything: the base of the doubles.
// Any thread; counted.
#ifndef ORBCEF_TESTS_NULL_MENU_MODEL_H
#define ORBCEF_TESTS_NULL_MENU_MODEL_H

#include <utility>

#include "include/cef_menu_model.h"

namespace engine_doubles {

class NullMenuModel : public CefMenuModel {
 public:
  // The interfaces count in other types.
  using Count = decltype(std::declval<CefMenuModel&>().GetCount());
  using Index = Count;

  bool IsSubMenu() override { return false; }
  bool Clear() override { return false; }
  Count GetCount() override { return 0; }
  bool AddSeparator() override { return false; }
  bool AddItem(int, const CefString&) override { return false; }
  bool AddCheckItem(int, const CefString&) override { return false; }
  bool AddRadioItem(int, const CefString&, int) override { return false; }
  CefRefPtr<CefMenuModel> AddSubMenu(int, const CefString&) override { return nullptr; }
  bool InsertSeparatorAt(Index) override { return false; }
  bool InsertItemAt(Index, int, const CefString&) override { return false; }
  bool InsertCheckItemAt(Index, int, const CefString&) override { return false; }
  bool InsertRadioItemAt(Index, int, const CefString&, int) override { return false; }
  CefRefPtr<CefMenuModel> InsertSubMenuAt(Index, int, const CefString&) override { return nullptr; }
  bool Remove(int) override { return false; }
  bool RemoveAt(Index) override { return false; }
  int GetIndexOf(int) override { return 0; }
  int GetCommandIdAt(Index) override { return 0; }
  bool SetCommandIdAt(Index, int) override { return false; }
  CefString GetLabel(int) override { return CefString(); }
  CefString GetLabelAt(Index) override { return CefString(); }
  bool SetLabel(int, const CefString&) override { return false; }
  bool SetLabelAt(Index, const CefString&) override { return false; }
  MenuItemType GetType(int) override { return MENUITEMTYPE_NONE; }
  MenuItemType GetTypeAt(Index) override { return MENUITEMTYPE_NONE; }
  int GetGroupId(int) override { return 0; }
  int GetGroupIdAt(Index) override { return 0; }
  bool SetGroupId(int, int) override { return false; }
  bool SetGroupIdAt(Index, int) override { return false; }
  CefRefPtr<CefMenuModel> GetSubMenu(int) override { return nullptr; }
  CefRefPtr<CefMenuModel> GetSubMenuAt(Index) override { return nullptr; }
  bool IsVisible(int) override { return false; }
  bool IsVisibleAt(Index) override { return false; }
  bool SetVisible(int, bool) override { return false; }
  bool SetVisibleAt(Index, bool) override { return false; }
  bool IsEnabled(int) override { return false; }
  bool IsEnabledAt(Index) override { return false; }
  bool SetEnabled(int, bool) override { return false; }
  bool SetEnabledAt(Index, bool) override { return false; }
  bool IsChecked(int) override { return false; }
  bool IsCheckedAt(Index) override { return false; }
  bool SetChecked(int, bool) override { return false; }
  bool SetCheckedAt(Index, bool) override { return false; }
  bool HasAccelerator(int) override { return false; }
  bool HasAcceleratorAt(Index) override { return false; }
  bool SetAccelerator(int, int, bool, bool, bool) override { return false; }
  bool SetAcceleratorAt(Index, int, bool, bool, bool) override { return false; }
  bool RemoveAccelerator(int) override { return false; }
  bool RemoveAcceleratorAt(Index) override { return false; }
  bool GetAccelerator(int, int&, bool&, bool&, bool&) override { return false; }
  bool GetAcceleratorAt(Index, int&, bool&, bool&, bool&) override { return false; }
  bool SetColor(int, cef_menu_color_type_t, cef_color_t) override { return false; }
  bool SetColorAt(int, cef_menu_color_type_t, cef_color_t) override { return false; }
  bool GetColor(int, cef_menu_color_type_t, cef_color_t&) override { return false; }
  bool GetColorAt(int, cef_menu_color_type_t, cef_color_t&) override { return false; }
  bool SetFontList(int, const CefString&) override { return false; }
  bool SetFontListAt(int, const CefString&) override { return false; }

 protected:
  ~NullMenuModel() override = default;

 private:
  IMPLEMENT_REFCOUNTING(NullMenuModel);
};

}  // namespace engine_doubles

#endif  // ORBCEF_TESTS_NULL_MENU_MODEL_H
