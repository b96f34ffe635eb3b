// Tickets and session cookies of a view, up to the engine's request and its cookie store.
#include <gtest/gtest.h>

#include "Control.h"
#include "Host.h"
#include "engine_doubles/HostDoubles.h"

namespace {

using engine_doubles::HostAuthDelegate;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using standin_host::Text;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kHome[] = "http://home.test/";
constexpr char kNoSession[] = "The current session is not authenticated with a CAS.";

// A host with a sign-on service and a launcher's cookie. The engine runs, so that lines are kept.
void Prepare(Host& host) {
  host.EnableLog();
  host.tools.Set("ORBCEF_TURNSTILE_URL", "https://sso.test");
  host.tools.Set("ORBHUBV9LAUNCHER_CASCOOKIE", "CASTGC=abc; Path=/");
  host.Init();
}

orbcefbrowser_c* NewView(Host& host, Events& events, HostAuthDelegate* delegate) {
  return host.table->create_browser(host.table, events.Table(),
                                    delegate ? delegate->Table() : nullptr, Text(kHome));
}

TEST(StandinLoginTest, ATicketIsUsedOnceAndInPlaceOfTheHomePage) {
  InOwnProcess([] {
    Host host;
    Prepare(host);
    HostAuthDelegate delegate;
    delegate.ticket_url = "about:blank";
    Events events;
    orbcefbrowser_c* const view = NewView(host, events, &delegate);
    EXPECT_THAT(delegate.asked_for, ElementsAre(kHome));
    EXPECT_EQ(delegate.references, 1);
    host.Open(view, kHome);
    EXPECT_THAT(control::Texts("request"), ElementsAre("about:blank"));
    view->load_url(view, Text(kHome));
    EXPECT_TRUE(control::Wait("request", 2));
    EXPECT_EQ(control::Last("request"), kHome);
    EXPECT_TRUE(control::Wait("loaded", 2));
    EXPECT_THAT(host.Log(), Not(HasSubstr(kNoSession)));
    host.CloseAndRelease(view);
    EXPECT_EQ(delegate.references, 0);
  });
}

TEST(StandinLoginTest, ARefusedTicketInstallsTheLaunchersCookie) {
  InOwnProcess([] {
    Host host;
    Prepare(host);
    HostAuthDelegate delegate;
    Events events;
    orbcefbrowser_c* const view = NewView(host, events, &delegate);
    // It is given back at once, and the view opens all the same.
    EXPECT_EQ(delegate.references, 0);
    EXPECT_THAT(host.Log(), HasSubstr("LEDGERWebAuthDelegate failed to get transient ticket for "
                                      "URL: http://home.test/\n"));
    host.Open(view);
    EXPECT_TRUE(control::Wait("set_cookie", 2));
    EXPECT_THAT(control::Texts("set_cookie"),
                testing::Contains(HasSubstr("https://sso.test/ CASTGC=abc; ")));
    EXPECT_THAT(control::Texts("set_cookie"), testing::Contains(HasSubstr("; secure; httponly")));
    host.CloseAndRelease(view);
  });
}

TEST(StandinLoginTest, WithoutADelegateNoLoginIsPendingWhateverServiceThereIs) {
  InOwnProcess([] {
    Host host;
    Prepare(host);
    Events events;
    orbcefbrowser_c* const view = NewView(host, events, nullptr);
    EXPECT_THAT(host.Log(), HasSubstr(kNoSession));
    host.Open(view);
    // That of the language alone.
    EXPECT_TRUE(control::Wait("set_cookie"));
    control::SettleAll();
    EXPECT_THAT(control::Texts("set_cookie"), ElementsAre(HasSubstr("hivelang=")));
    host.CloseAndRelease(view);
  });
}

TEST(StandinLoginTest, AStartURLThatDoesNotParseAsksForNoTicket) {
  InOwnProcess([] {
    Host host;
    Prepare(host);
    control::Fail("parse_url");
    HostAuthDelegate delegate;
    Events events;
    orbcefbrowser_c* const view = NewView(host, events, &delegate);
    EXPECT_THAT(delegate.asked_for, IsEmpty());
    view->release(view);
  });
}

TEST(StandinLoginTest, WithoutACookieManagerALoginIsGivenUp) {
  InOwnProcess([] {
    Host host;
    Prepare(host);
    EXPECT_TRUE(control::Wait("context_initialized"));
    HostAuthDelegate delegate;
    Events events;
    orbcefbrowser_c* const view = NewView(host, events, &delegate);
    control::Fail("cookie_manager", -1);
    host.Open(view);
    EXPECT_TRUE(events.Has("state 1"));
    EXPECT_EQ(control::Count("set_cookie"), 0);
    host.CloseAndRelease(view);
  });
}

}  // namespace
