// The browser table as a host sees it.
#include <gmock/gmock.h>

#include <cstring>

#include "FakeTools.h"
#include "FreshProcess.h"
#include "ORBCefEngine.h"
#include "ORBCefPluginClient.h"
#include "TempDirectory.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::HostEvents;
using engine_doubles::TextOf;
using testing::HasSubstr;

// A text of the host for one call.
class Text {
 public:
  explicit Text(const std::string& text) : _record(FakeTools::NewRecord(text)) {}
  ~Text() { _record->free(_record); }
  operator const orbcefstring_c*() const { return _record; }

 private:
  orbcefstring_c* const _record;
};

// The text of a record that the module returned; the record is freed.
std::string Take(orbcefstring_c* record) {
  const std::string text = record ? TextOf(record) : "(null)";
  if (record) {
    record->free(record);
  }
  return text;
}

struct Holder {
  void* object;
  int32_t reference_count;
};

constexpr int32_t kRect[4] = {1, 2, 3, 4};

class ORBCefBrowserTableTest : public testing::Test {
 protected:
  ~ORBCefBrowserTableTest() override {
    if (_table) {
      _table->release(_table);
    }
    _handler->DoClose(_browser);
  }

  void Arrive() { _handler->OnAfterCreated(_browser); }

  // Every slot with arguments that a host may give.
  static void CallAll(orbcefbrowser_c* table, orbcefbrowser_c* argument);

  FakeTools _tools;
  HostEvents _host;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<ORBCefClientHandler> _handler = new ORBCefClientHandler(_host.Table(), nullptr, "");
  CefRefPtr<ORBCefPluginClient> _client = new ORBCefPluginClient(_handler, "http://home.test/");
  orbcefbrowser_c* _table = ORBCefMakeBrowserTable(_client);
};

TEST_F(ORBCefBrowserTableTest, NoSlotIsEmpty) {
  void* slots[60];
  static_assert(sizeof(slots) == sizeof(orbcefbrowser_c));
  std::memcpy(slots, _table, sizeof(slots));
  for (int i = 0; i < 60; ++i) {
    EXPECT_NE(slots[i], nullptr) << "slot " << i;
  }
}

TEST_F(ORBCefBrowserTableTest, CountsReferencesInItsHolder) {
  const auto* const holder = static_cast<const Holder*>(_table->instance);
  EXPECT_EQ(holder->object, _client.get());
  EXPECT_EQ(holder->reference_count, 1);
  _table->add_ref(_table);
  EXPECT_EQ(holder->reference_count, 2);
  _table->release(_table);
  EXPECT_EQ(holder->reference_count, 1);
  EXPECT_FALSE(_client->HasOneRef());
  _table->release(_table);
  _table = nullptr;
  EXPECT_TRUE(_client->HasOneRef());
}

TEST_F(ORBCefBrowserTableTest, FlagsAreGivenBack) {
  struct Flag {
    uint8_t (*get)(orbcefbrowser_c*);
    void (*set)(orbcefbrowser_c*, uint8_t);
    uint8_t initial;
  };
  const Flag flags[] = {
      {_table->get_flag0, _table->set_flag0, 0},
      {_table->get_flag1, _table->set_flag1, 1},
      {_table->get_javascript_enabled, _table->set_javascript_enabled, 1},
      {_table->get_flag3, _table->set_flag3, 1},
      {_table->get_history_enabled, _table->set_history_enabled, 1},
      {_table->get_reload_enabled, _table->set_reload_enabled, 1},
      {_table->get_zoom_by_page_enabled, _table->set_zoom_by_page_enabled, 1},
      {_table->get_forward_console, _table->set_forward_console, 0},
      {_table->get_local_files_allowed, _table->set_local_files_allowed, 0},
      {_table->get_external_navigation_allowed, _table->set_external_navigation_allowed, 1},
      {_table->get_js_dialogs_allowed, _table->set_js_dialogs_allowed, 0},
  };
  for (const Flag& flag : flags) {
    EXPECT_EQ(flag.get(_table), flag.initial);
    flag.set(_table, flag.initial ? 0 : 255);
    EXPECT_EQ(flag.get(_table), flag.initial ? 0 : 1);
    // No other flag moved.
    for (const Flag& other : flags) {
      EXPECT_TRUE(&other == &flag || other.get(_table) == other.initial);
    }
    flag.set(_table, flag.initial);
    EXPECT_EQ(flag.get(_table), flag.initial);
  }
}

TEST_F(ORBCefBrowserTableTest, ThePopupModeIsTheHandlers) {
  EXPECT_EQ(_table->get_popup_mode(_table), 1);
  _table->set_popup_mode(_table, 3);
  EXPECT_EQ(_table->get_popup_mode(_table), 3);
  EXPECT_EQ(_handler->Settings().popup_mode, 3);
  _table->set_js_dialogs_allowed(_table, 1);
  EXPECT_TRUE(_handler->Settings().js_dialogs_allowed);
}

TEST_F(ORBCefBrowserTableTest, TextsAreNewRecordsAlsoWhenEmpty) {
  EXPECT_EQ(Take(_table->get_home_url(_table)), "http://home.test/");
  orbcefstring_c* const empty = _table->get_error_url(_table);
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty->data, nullptr);
  EXPECT_EQ(empty->length, 0u);
  empty->free(empty);
  EXPECT_EQ(Take(_table->get_current_url(_table)), "");
  _table->set_error_url(_table, Text("http://error.test/"));
  EXPECT_EQ(Take(_table->get_error_url(_table)), "http://error.test/");
  _table->set_home_url(_table, Text("HTTP://Other.test"));
  EXPECT_EQ(Take(_table->get_home_url(_table)), "HTTP://Other.test");
  _table->set_home_url(_table, nullptr);
  EXPECT_EQ(Take(_table->get_home_url(_table)), "");
}

TEST_F(ORBCefBrowserTableTest, TheDownloadDirectoryIsCheckedAndCleared) {
  const TempDirectory directory;
  _table->set_download_dir(_table, Text(directory.Path()));
  EXPECT_EQ(Take(_table->get_download_dir(_table)), directory.Path());
  _table->set_download_dir(_table, Text("relative\\dir"));
  EXPECT_EQ(Take(_table->get_download_dir(_table)), directory.Path());
  _table->set_download_dir(_table, Text(""));
  EXPECT_EQ(Take(_table->get_download_dir(_table)), "");
  _table->set_download_dir(_table, Text(directory.Path()));
  _table->set_download_dir(_table, nullptr);
  EXPECT_EQ(Take(_table->get_download_dir(_table)), "");
}

TEST_F(ORBCefBrowserTableTest, NavigationReachesTheBrowser) {
  Arrive();
  EXPECT_EQ(_table->can_go_back(_table), 0);
  EXPECT_EQ(_table->can_go_forward(_table), 0);
  _browser->can_go_back = true;
  EXPECT_EQ(_table->can_go_back(_table), 1);
  EXPECT_EQ(_table->can_go_forward(_table), 0);
  _browser->can_go_forward = true;
  EXPECT_EQ(_table->can_go_forward(_table), 1);
  _table->go_back(_table);
  _table->go_forward(_table);
  _table->reload(_table);
  _table->stop_load(_table);
  _table->load_url(_table, Text("http://a.test/"));
  EXPECT_EQ(_browser->calls,
            (Calls{"GoBack", "GoForward", "Reload", "StopLoad", "LoadURL http://a.test/"}));
}

TEST_F(ORBCefBrowserTableTest, EditingReachesTheFocusedFrame) {
  Arrive();
  Calls focused;
  _browser->focused_frame = new engine_doubles::FrameDouble(focused, "");
  for (auto* const edit : {_table->copy, _table->cut, _table->paste, _table->delete_selection,
                           _table->select_all, _table->undo, _table->redo}) {
    edit(_table);
  }
  EXPECT_EQ(focused, (Calls{"Copy", "Cut", "Paste", "Delete", "SelectAll", "Undo", "Redo"}));
  EXPECT_TRUE(_browser->calls.empty());
  _browser->focused_frame = nullptr;
  _table->copy(_table);
}

TEST_F(ORBCefBrowserTableTest, HostOperationsReachTheBrowserHost) {
  Arrive();
  _table->set_zoom_level(_table, 1.5);
  EXPECT_DOUBLE_EQ(_browser->host->zoom_level, 1.5);
  _table->show_dev_tools(_table);
  _table->close_dev_tools(_table);
  _table->notify_move_or_resize(_table);
  EXPECT_EQ(_browser->calls, (Calls{"SetZoomLevel", "ShowDevTools Developer Tools", "CloseDevTools",
                                    "NotifyMoveOrResizeStarted"}));
}

TEST_F(ORBCefBrowserTableTest, ScriptsReachThePage) {
  Arrive();
  _table->execute_javascript(_table, Text("a()"), Text("http://s.test/"), 7);
  _table->execute_javascript(_table, Text("b()"), nullptr, 8);
  EXPECT_EQ(_browser->calls,
            (Calls{"Execute a() @ http://s.test/:7", "Execute b() @ http://page.test/:8"}));
}

TEST_F(ORBCefBrowserTableTest, TheWindowIsTheBrowsers) {
  EXPECT_EQ(_table->get_window(_table), nullptr);
  _browser->host->window = platform::FromWindowHandle<CefWindowHandle>(77);
  Arrive();
  EXPECT_EQ(_table->get_window(_table), reinterpret_cast<void*>(77));
  _table->close(_table, 1);
  EXPECT_EQ(_table->get_window(_table), nullptr);
}

TEST_F(ORBCefBrowserTableTest, NullArgumentsDoNothing) {
  Arrive();
  _table->load_url(_table, nullptr);
  _table->set_bounds(_table, nullptr);
  _table->create(_table, nullptr, nullptr, Text("http://a.test/"));
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_EQ(Take(_table->get_current_url(_table)), "");
}

TEST_F(ORBCefBrowserTableTest, TextsMayHoldAnything) {
  Arrive();
  const std::string zero("a\0b", 3);
  _table->set_error_url(_table, Text(zero));
  EXPECT_EQ(Take(_table->get_error_url(_table)), zero);
  _table->set_error_url(_table, Text("x\xED\xA0\x80y\xFF"));
  EXPECT_THAT(Take(_table->get_error_url(_table)), testing::StartsWith("x"));
  const std::string large(16 * 1024 * 1024, 'z');
  _table->set_error_url(_table, Text(large));
  EXPECT_EQ(Take(_table->get_error_url(_table)).size(), large.size());
  _table->execute_javascript(_table, Text(large), Text(""), 1);
  EXPECT_EQ(_browser->calls.size(), 1u);
}

TEST_F(ORBCefBrowserTableTest, AClosingViewTouchesTheEngineNoMore) {
  _browser->can_go_back = true;
  Arrive();
  _handler->DoClose(_browser);
  EXPECT_EQ(_table->can_go_back(_table), 0);
  CallAll(_table, _table);
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefBrowserTableTest, EverySlotWorksAfterClose) {
  Arrive();
  _table->close(_table, 0);
  _handler->DoClose(_browser);
  _handler->OnBeforeClose(_browser);
  CallAll(_table, _table);
  EXPECT_EQ(_browser->calls, Calls{"CloseBrowser"});
  EXPECT_EQ(_host.references, 0);
}

TEST_F(ORBCefBrowserTableTest, EverySlotWorksBeforeTheBrowser) {
  CallAll(_table, _table);
  EXPECT_TRUE(_browser->calls.empty());
}

// The neutral values of a view that has lost its object or its handler.
void ExpectNeutral(orbcefbrowser_c* table, orbcefbrowser_c* argument) {
  for (auto* const get :
       {table->get_flag0, table->get_flag1, table->get_javascript_enabled, table->get_flag3,
        table->get_history_enabled, table->get_reload_enabled, table->get_zoom_by_page_enabled,
        table->get_forward_console, table->get_local_files_allowed,
        table->get_external_navigation_allowed, table->get_js_dialogs_allowed, table->can_go_back,
        table->can_go_forward}) {
    EXPECT_EQ(get(argument), 0);
  }
  for (auto* const get : {table->get_download_dir, table->get_error_url, table->get_current_url,
                          table->get_home_url}) {
    EXPECT_EQ(get(argument), nullptr);
  }
  EXPECT_EQ(table->get_window(argument), nullptr);
  // The one exception.
  EXPECT_EQ(table->get_popup_mode(argument), 1);
}

TEST_F(ORBCefBrowserTableTest, WithoutItsObjectEverySlotIsNeutral) {
  orbcefbrowser_c* const bare = ORBCefMakeBrowserTable(nullptr);
  ExpectNeutral(bare, bare);
  CallAll(bare, bare);
  EXPECT_EQ(bare->execute_replay(bare, Text("{}")), nullptr);
  bare->add_ref(bare);
  bare->release(bare);
  bare->release(bare);
}

TEST_F(ORBCefBrowserTableTest, WithoutAHandlerEverySlotButTheReplayIsNeutral) {
  orbcefbrowser_c* const bare = ORBCefMakeBrowserTable(new ORBCefPluginClient(nullptr, "x"));
  ExpectNeutral(bare, bare);
  CallAll(bare, bare);
  orbcefreplayresult_c* const result = bare->execute_replay(bare, Text("{}"));
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->status, 200);
  EXPECT_EQ(TextOf(result->message), "No valid instance for ORBCefClientHandler.");
  result->free(result);
  bare->release(bare);
}

TEST_F(ORBCefBrowserTableTest, AReplayReturnsItsRecord) {
  orbcefreplayresult_c* const result = _table->execute_replay(_table, Text("{}"));
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->status, 200);
  EXPECT_EQ(TextOf(result->message), "No valid instance for ORBCefReplayDelegate.");
  result->free(result);
}

TEST_F(ORBCefBrowserTableTest, ANullTableIsReportedAndSurvived) {
  fresh_process::Run(
      [&] {
        ExpectNeutral(_table, nullptr);
        CallAll(_table, nullptr);
        EXPECT_EQ(_table->execute_replay(nullptr, Text("{}")), nullptr);
        _table->add_ref(nullptr);
        _table->release(nullptr);
      },
      HasSubstr("iCStruct!=0 in ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefPluginClient "
                "line 17"));
}

TEST_F(ORBCefBrowserTableTest, ANullTableEndsATestRig) {
  fresh_process::ExpectDeath(
      [&] {
        _tools.Set("QVL_RIG_TMP", "");
        _table->reload(nullptr);
      },
      HasSubstr("iCStruct!=0 in "));
}

// An engine that is up without a library behind it.
constexpr ORBCefEngine::Calls kEngine = {
    [](const CefMainArgs&, const CefSettings&, CefRefPtr<CefApp>) { return true; }, [] {}};

TEST_F(ORBCefBrowserTableTest, AViewThatWasNeverCreatedIsFreedByItsRelease) {
  fresh_process::Run([&] {
    _tools.temp_directory = "/tmp";
    ORBCefEngine::InitializeEngine(kEngine);
    HostEvents host;
    orbcefbrowser_c* const table =
        ORBCefCreateBrowserTable(host.Table(), nullptr, Text("http://home.test/"));
    EXPECT_EQ(host.references, 1);
    EXPECT_EQ(Take(table->get_home_url(table)), "http://home.test/");
    table->release(table);
    EXPECT_EQ(host.references, 0);
  });
}

TEST_F(ORBCefBrowserTableTest, AClosedViewLetsItsHostsTableGo) {
  fresh_process::Run([&] {
    _tools.temp_directory = "/tmp";
    ORBCefEngine::InitializeEngine(kEngine);
    HostEvents host;
    orbcefbrowser_c* const table = ORBCefCreateBrowserTable(host.Table(), nullptr, nullptr);
    table->create(table, nullptr, kRect, Text("http://a.test/"));
    EXPECT_EQ(Take(table->get_current_url(table)), "http://a.test/");
    table->close(table, 1);
    EXPECT_EQ(host.references, 0);
    table->release(table);
  });
}

void ORBCefBrowserTableTest::CallAll(orbcefbrowser_c* table, orbcefbrowser_c* argument) {
  const Text text("text");
  for (auto* const set : {table->set_flag0, table->set_flag1, table->set_javascript_enabled,
                          table->set_flag3, table->set_history_enabled, table->set_reload_enabled,
                          table->set_zoom_by_page_enabled, table->set_forward_console,
                          table->set_local_files_allowed, table->set_external_navigation_allowed,
                          table->set_js_dialogs_allowed, table->set_visible}) {
    set(argument, 1);
  }
  for (auto* const set :
       {table->set_download_dir, table->set_error_url, table->set_home_url, table->load_url}) {
    set(argument, text);
  }
  for (auto* const act :
       {table->go_back, table->go_forward, table->reload, table->stop_load, table->copy, table->cut,
        table->paste, table->delete_selection, table->select_all, table->undo, table->redo,
        table->show_dev_tools, table->close_dev_tools, table->notify_move_or_resize}) {
    act(argument);
  }
  table->set_popup_mode(argument, 2);
  table->execute_javascript(argument, text, text, 1);
  table->set_zoom_level(argument, 1);
  table->change_zoom_level(argument, 1);
  table->set_bounds(argument, kRect);
  table->create(argument, nullptr, kRect, text);
}

}  // namespace
