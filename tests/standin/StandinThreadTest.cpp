// Callbacks on wrong threads and with nulls: none does anything, and none keeps an argument.
#include <gtest/gtest.h>

#include "Control.h"
#include "Host.h"

namespace {

using control::Callback;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Lines = std::vector<std::string>;

struct WrongThread {
  const char* callback;
  // The answer and the first changed argument that it must give back.
  int result;
  int out;
};

// All of them belong to the UI thread.
constexpr WrongThread kUiCallbacks[] = {
    {"CefLifeSpanHandler::OnAfterCreated", 0, 0},
    {"CefLifeSpanHandler::DoClose", 1, 0},
    {"CefLifeSpanHandler::OnBeforeClose", 0, 0},
    {"CefLoadHandler::OnLoadingStateChange", 0, 0},
    {"CefLoadHandler::OnLoadError", 0, 0},
    {"CefDisplayHandler::OnAddressChange", 0, 0},
    {"CefDisplayHandler::OnTitleChange", 0, 0},
    {"CefDisplayHandler::OnStatusMessage", 0, 0},
    {"CefDisplayHandler::OnConsoleMessage", 0, 0},
    {"CefContextMenuHandler::OnBeforeContextMenu", 0, 0},
    {"CefContextMenuHandler::OnContextMenuCommand", 0, 0},
    {"CefDownloadHandler::OnBeforeDownload", 0, 0},
    {"CefJSDialogHandler::OnJSDialog", 0, 0},
    {"CefKeyboardHandler::OnPreKeyEvent", 0, 0},
    {"CefKeyboardHandler::OnKeyEvent", 0, 0},
    {"CefRenderHandler::GetRootScreenRect", 0, 0},
    {"CefRenderHandler::GetViewRect", 0, 0},
    {"CefRenderHandler::GetScreenPoint", 0, 0},
    {"CefRequestHandler::OnBeforeBrowse", 1, 0},
    {"CefRequestHandler::OnRenderProcessTerminated", 0, 0},
    {"CefClient::OnProcessMessageReceived", 0, 0},
};

// These two belong to the IO thread.
constexpr WrongThread kIoCallbacks[] = {
    {"CefResourceRequestHandler::OnBeforeResourceLoad", RV_CANCEL, 0},
    {"CefResourceRequestHandler::OnProtocolExecution", 0, 0},
};

constexpr char kUntouchedMenu[] = "131";
constexpr int kRefresh = 26505;
constexpr int kKeyF5 = 116;

class StandinThreadTest : public testing::Test {
 protected:
  // A view that listens to all that there is, in a process that logs.
  static void WithView(const std::function<void(Host&, Events&, orbcefbrowser_c*)>& body,
                       bool has_checks = true) {
    InOwnProcess([&] {
      Host host;
      host.EnableLog();
      if (!has_checks)
        host.tools.Set("ORBCEF_NO_TID_CHECK", "");
      Events events;
      orbcefbrowser_c* const view = host.NewView(events);
      view->set_forward_console(view, 1);
      host.Open(view);
      control::SettleAll();
      body(host, events, view);
      host.CloseAndRelease(view);
      host.Shutdown();
      EXPECT_EQ(control::Living(), 0);
    });
  }

  static void ExpectNothing(Host& host, Events& events, const WrongThread& expected, int thread) {
    const Lines lines = events.Lines();
    const std::string log = host.Log();
    Callback call(expected.callback, thread);
    call.Text(0, "http://a.test/").Text(1, "text").Number(0, PID_RENDERER);
    ASSERT_TRUE(call.Play()) << expected.callback;
    EXPECT_EQ(call.result, expected.result) << expected.callback << " on " << thread;
    EXPECT_EQ(call.outs[0], expected.out) << expected.callback << " on " << thread;
    EXPECT_EQ(events.Lines(), lines) << expected.callback << " on " << thread;
    EXPECT_EQ(host.Log(), log) << expected.callback << " on " << thread;
  }
};

TEST_F(StandinThreadTest, UICallbacksOnOtherThreadsDoNothing) {
  WithView([](Host& host, Events& events, orbcefbrowser_c*) {
    for (const WrongThread& callback : kUiCallbacks) {
      for (const int thread : {static_cast<int>(TID_IO), static_cast<int>(TID_FILE_BACKGROUND),
                               ORBCEF_STANDIN_STRANGER, ORBCEF_STANDIN_CALLER}) {
        ExpectNothing(host, events, callback, thread);
      }
    }
  });
}

TEST_F(StandinThreadTest, KeysAndMenusOnOtherThreadsDoNothing) {
  WithView([](Host&, Events&, orbcefbrowser_c*) {
    for (const int thread : {static_cast<int>(TID_IO), ORBCEF_STANDIN_STRANGER}) {
      Callback menu("CefContextMenuHandler::OnBeforeContextMenu", thread);
      EXPECT_TRUE(menu.Number(0, CM_TYPEFLAG_PAGE).Play());
      EXPECT_STREQ(menu.text, kUntouchedMenu);
      Callback command("CefContextMenuHandler::OnContextMenuCommand", thread);
      EXPECT_TRUE(command.Number(2, kRefresh).Play());
      EXPECT_EQ(command.result, 0);
      Callback before("CefKeyboardHandler::OnPreKeyEvent", thread);
      EXPECT_TRUE(before.Number(1, kKeyF5).Play());
      EXPECT_EQ(before.outs[0], 0);
      Callback key("CefKeyboardHandler::OnKeyEvent", thread);
      EXPECT_TRUE(key.Number(1, kKeyF5).Play());
      EXPECT_EQ(key.result, 0);
    }
    EXPECT_EQ(control::Count("reload"), 0);
  });
}

TEST_F(StandinThreadTest, IOCallbacksOnOtherThreadsDoNothing) {
  WithView([](Host& host, Events& events, orbcefbrowser_c*) {
    for (const WrongThread& callback : kIoCallbacks) {
      for (const int thread : {static_cast<int>(TID_UI), ORBCEF_STANDIN_STRANGER}) {
        ExpectNothing(host, events, callback, thread);
      }
    }
  });
}

TEST_F(StandinThreadTest, WithoutThreadChecksACallbackCarriesOnFromAStrangeThread) {
  WithView(
      [](Host&, Events& events, orbcefbrowser_c*) {
        Callback title("CefDisplayHandler::OnTitleChange", ORBCEF_STANDIN_STRANGER);
        EXPECT_TRUE(title.Text(0, "from afar").Play());
        EXPECT_TRUE(events.Has("title from afar"));
      },
      false);
}

TEST_F(StandinThreadTest, ADoCloseOnAWrongThreadIsRefusedAndTheViewStays) {
  WithView([](Host&, Events&, orbcefbrowser_c* view) {
    Callback close("CefLifeSpanHandler::DoClose", TID_IO);
    EXPECT_TRUE(close.Play());
    EXPECT_EQ(close.result, 1);
    view->reload(view);
    EXPECT_TRUE(control::Wait("loaded", 2));
  });
}

TEST_F(StandinThreadTest, NullArgumentsAreGivenBackOnTheRightThread) {
  WithView([](Host&, Events& events, orbcefbrowser_c*) {
    const Lines lines = events.Lines();
    Callback created("CefLifeSpanHandler::OnAfterCreated");
    EXPECT_TRUE(created.Null(0).Play());
    Callback loading("CefLoadHandler::OnLoadingStateChange");
    EXPECT_TRUE(loading.Null(0).Play());
    Callback address("CefDisplayHandler::OnAddressChange");
    EXPECT_TRUE(address.Null(0).Null(1).Text(0, "http://a.test/").Play());
    Callback error("CefLoadHandler::OnLoadError");
    EXPECT_TRUE(error.Null(0).Null(1).Number(0, ERR_CONNECTION_REFUSED).Play());
    Callback download("CefDownloadHandler::OnBeforeDownload");
    EXPECT_TRUE(download.Null(0).Null(1).Null(2).Play());
    EXPECT_EQ(download.outs[1], 0);
    for (const int argument : {0, 2, 3}) {
      Callback menu("CefContextMenuHandler::OnBeforeContextMenu");
      EXPECT_TRUE(menu.Null(argument).Number(0, CM_TYPEFLAG_PAGE).Play());
      EXPECT_STREQ(menu.text, kUntouchedMenu);
    }
    for (const int argument : {0, 1, 2}) {
      Callback command("CefContextMenuHandler::OnContextMenuCommand");
      EXPECT_TRUE(command.Null(argument).Number(2, kRefresh).Play());
      EXPECT_EQ(command.result, 0);
    }
    for (const char* name :
         {"CefKeyboardHandler::OnPreKeyEvent", "CefKeyboardHandler::OnKeyEvent"}) {
      Callback key(name);
      EXPECT_TRUE(key.Null(0).Number(1, kKeyF5).Play());
      EXPECT_EQ(key.result, 0);
      EXPECT_EQ(key.outs[0], 0);
    }
    EXPECT_EQ(control::Count("reload"), 0);
    EXPECT_EQ(events.Lines(), lines);

    for (const int argument : {1, 2}) {
      Callback browse("CefRequestHandler::OnBeforeBrowse");
      EXPECT_TRUE(browse.Null(argument).Text(0, "http://a.test/").Play());
      EXPECT_EQ(browse.result, 1);
    }
    Callback load("CefResourceRequestHandler::OnBeforeResourceLoad", TID_IO);
    EXPECT_TRUE(load.Null(2).Text(0, "http://a.test/").Play());
    EXPECT_EQ(load.result, RV_CANCEL);
    Callback protocol("CefResourceRequestHandler::OnProtocolExecution", TID_IO);
    EXPECT_TRUE(protocol.Null(2).Text(0, "tel:1").Play());
    EXPECT_EQ(protocol.outs[0], 0);
  });
}

TEST_F(StandinThreadTest, ABrowserMayBeMissingInTheCallbacksThatDoNotAskIt) {
  WithView([](Host& host, Events& events, orbcefbrowser_c*) {
    Callback title("CefDisplayHandler::OnTitleChange");
    EXPECT_TRUE(title.Null(0).Text(0, "title").Play());
    EXPECT_TRUE(events.Has("title title"));
    Callback terminated("CefRequestHandler::OnRenderProcessTerminated");
    EXPECT_TRUE(terminated.Null(0).Play());
    EXPECT_THAT(host.Log(), HasSubstr("abnormally terminated"));
  });
}

TEST_F(StandinThreadTest, AMessageNeedsABrowserANameAndARenderer) {
  WithView([](Host&, Events& events, orbcefbrowser_c*) {
    const Lines lines = events.Lines();
    const auto receive = [](int null_argument, int source, const char* name) {
      Callback message("CefClient::OnProcessMessageReceived");
      if (null_argument >= 0)
        message.Null(null_argument);
      message.Text(0, name).Number(0, source).Fields({"strings:a|b"});
      EXPECT_TRUE(message.Play());
      return message.result;
    };
    EXPECT_EQ(receive(0, PID_RENDERER, "SendString"), 0);
    EXPECT_EQ(receive(2, PID_RENDERER, "SendString"), 0);
    EXPECT_EQ(receive(-1, PID_BROWSER, "SendString"), 0);
    EXPECT_EQ(receive(-1, PID_RENDERER, "NoSuchMessage"), 0);
    control::Fail("message_arguments");
    EXPECT_EQ(receive(-1, PID_RENDERER, "SendString"), 0);
    EXPECT_EQ(events.Lines(), lines);
    // The frame is not asked for.
    EXPECT_EQ(receive(1, PID_RENDERER, "SendString"), 1);
    EXPECT_TRUE(events.Has("strings|a|b"));
  });
}

TEST_F(StandinThreadTest, AMessageWithTooFewOrOtherArgumentsIsNoFault) {
  WithView([](Host&, Events& events, orbcefbrowser_c*) {
    for (const char* name : {"V8Context", "OnZoomChanged", "DocumentSize", "FocusedNodeChanged",
                             "SendString", "LoadHome", "OpenDevTools", "CloseDevTools"}) {
      for (const auto& fields :
           {std::vector<const char*>{}, std::vector<const char*>{"string:x", "null:"}}) {
        Callback message("CefClient::OnProcessMessageReceived");
        EXPECT_TRUE(message.Text(0, name).Number(0, PID_RENDERER).Fields(fields).Play()) << name;
      }
    }
    control::SettleAll();
    EXPECT_TRUE(events.Has("size 0x0"));
    EXPECT_TRUE(events.Has("v8 0"));
  });
}

TEST_F(StandinThreadTest, PageMessagesReachTheHost) {
  WithView([](Host&, Events& events, orbcefbrowser_c*) {
    const auto receive = [](const char* name, const std::vector<const char*>& fields) {
      Callback message("CefClient::OnProcessMessageReceived");
      EXPECT_TRUE(message.Text(0, name).Number(0, PID_RENDERER).Fields(fields).Play());
      EXPECT_EQ(message.result, 1) << name;
    };
    receive("OnDOMContentLoaded", {});
    receive("V8Context", {"bool:1"});
    receive("DocumentSize", {"int:800", "int:600"});
    receive("OnZoomChanged", {"double:50"});
    EXPECT_TRUE(events.Has("state 2"));
    EXPECT_TRUE(events.Has("v8 1"));
    EXPECT_TRUE(events.Has("size 800x600"));
    EXPECT_TRUE(events.Has("zoom 0.500000"));
    EXPECT_THAT(control::Texts("zoom"), ElementsAre("0.500000"));
  });
}

}  // namespace
