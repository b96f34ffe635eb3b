#include "ORBCefBrowserEvents.h"

#include <gtest/gtest.h>

#include "engine_doubles/HostDoubles.h"

namespace {

using engine_doubles::HostEvents;
using Lines = std::vector<std::string>;

TEST(ORBCefBrowserEventsTest, HoldsOneReferenceForAsLongAsItKeepsTheTable) {
  HostEvents host;
  {
    const ORBCefBrowserEvents events(host.Table());
    EXPECT_EQ(host.references, 1);
  }
  EXPECT_EQ(host.references, 0);
}

TEST(ORBCefBrowserEventsTest, ResetGivesTheReferenceBackOnceAndSilencesTheView) {
  HostEvents host;
  ORBCefBrowserEvents events(host.Table());
  events.Reset();
  events.Reset();
  EXPECT_EQ(host.references, 0);
  EXPECT_FALSE(events.IsSet());
  events.OnTitleChanged("x");
  EXPECT_TRUE(host.lines.empty());
}

TEST(ORBCefBrowserEventsTest, CallsEachSlotWithItsArguments) {
  HostEvents host;
  const ORBCefBrowserEvents events(host.Table());
  events.OnStateChanged(ORBCefBrowserEvents::kCreated);
  events.OnStateChanged(ORBCefBrowserEvents::kDocumentReady);
  events.OnStateChanged(ORBCefBrowserEvents::kUnloaded);
  events.OnV8Context(true);
  events.OnStringsReceived({"a", "", "\xC3\xA9"});
  events.OnTitleChanged("");
  events.OnAddressChanged("http://a.test/");
  events.OnLoadingStateChanged(true, "http://a.test/");
  events.OnDocumentSize(3, -4);
  events.OnConsoleMessage("text", "source", 7);
  events.OnZoomChanged(0.25);
  EXPECT_EQ(host.lines, (Lines{"state 1", "state 2", "state 3", "v8 1", "strings 3|a||\xC3\xA9",
                               "title ", "address http://a.test/", "loading 1 http://a.test/",
                               "size 3x-4", "console text source:7", "zoom 0.250000"}));
}

TEST(ORBCefBrowserEventsTest, AnEmptyListOfStringsIsNotTold) {
  HostEvents host;
  const ORBCefBrowserEvents events(host.Table());
  events.OnStringsReceived({});
  EXPECT_TRUE(host.lines.empty());
}

void CallAll(const ORBCefBrowserEvents& events) {
  events.OnStateChanged(ORBCefBrowserEvents::kCreated);
  events.OnV8Context(true);
  events.OnStringsReceived({"a"});
  events.OnTitleChanged("a");
  events.OnAddressChanged("a");
  events.OnLoadingStateChanged(true, "a");
  events.OnDocumentSize(1, 2);
  events.OnConsoleMessage("a", "b", 1);
  events.OnZoomChanged(1);
}

TEST(ORBCefBrowserEventsTest, LivesWithoutATable) {
  ORBCefBrowserEvents events(nullptr);
  CallAll(events);
  events.Reset();
  EXPECT_FALSE(events.IsSet());
}

TEST(ORBCefBrowserEventsTest, LivesWithATableOfEmptySlots) {
  orbcefbrowserevents_c table = {};
  ORBCefBrowserEvents events(&table);
  CallAll(events);
  EXPECT_TRUE(events.IsSet());
  events.Reset();
}

TEST(ORBCefBrowserEventsTest, AHostMayTakeItsTableAwayInsideACall) {
  HostEvents host;
  ORBCefBrowserEvents events(host.Table());
  host.on_event = [&events] { events.Reset(); };
  events.OnStringsReceived({"a", "b"});
  events.OnTitleChanged("lost");
  EXPECT_EQ(host.lines, Lines{"strings 2|a|b"});
  EXPECT_EQ(host.references, 0);
}

TEST(ORBCefBrowserEventsTest, CarriesZeroBytesLoneSurrogatesAndLongTexts) {
  HostEvents host;
  const ORBCefBrowserEvents events(host.Table());
  events.OnTitleChanged(std::string("a\0b", 3));
  const char16 lone[] = {'x', 0xD800, 'y'};
  events.OnTitleChanged(CefString(lone, 3, true));
  events.OnTitleChanged(std::string(16 * 1024 * 1024, 'z'));
  ASSERT_EQ(host.lines.size(), 3u);
  EXPECT_EQ(host.lines[0], std::string("title a\0b", 9));
  EXPECT_EQ(host.lines[1], "title x\xEF\xBF\xBDy");
  EXPECT_EQ(host.lines[2].size(), 16u * 1024 * 1024 + 6);
}

}  // namespace
