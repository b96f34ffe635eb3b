#include "ORBCefPreferenceRequest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeTools.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::FrameDouble;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kResolvePlace[] =
    " @ ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefClientHandler:251";
constexpr char kRejectPlace[] =
    " @ ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefClientHandler:260";

std::string Resolved(const std::string& arguments) {
  return "Execute xocef._internals.resolvePromise(" + arguments + ");" + kResolvePlace;
}

std::string Rejected(const std::string& arguments) {
  return "Execute xocef._internals.rejectPromise(" + arguments + ");" + kRejectPlace;
}

class ORBCefPreferenceRequestTest : public testing::Test {
 protected:
  ORBCefPreferenceRequestTest() {
    _arguments->SetInt(0, 7);
    _arguments->SetString(1, "repo");
    _arguments->SetString(2, "key");
    _arguments->SetString(3, "[1]");
  }

  void Save() {
    ORBCefPreferenceRequest::Start(
        ORBCefPreferenceRequest::FromSaveValue(_browser, _sender, _arguments));
  }
  void Load() {
    ORBCefPreferenceRequest::Start(
        ORBCefPreferenceRequest::FromLoadValue(_browser, _sender, _arguments));
  }

  FakeTools _tools;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<CefFrame> _sender;
  CefRefPtr<CefListValue> _arguments = CefListValue::Create();
};

TEST_F(ORBCefPreferenceRequestTest, AMessageToSaveIsReadWhole) {
  const auto request = ORBCefPreferenceRequest::FromSaveValue(_browser, _sender, _arguments);
  ASSERT_TRUE(request);
  EXPECT_EQ(_browser->main_frame.get(), request->frame.get());
  EXPECT_EQ(7, request->promise_id);
  EXPECT_EQ("repo", request->repository);
  EXPECT_EQ("key", request->key);
  EXPECT_EQ("[1]", request->value);
  EXPECT_FALSE(request->is_read);
}

TEST_F(ORBCefPreferenceRequestTest, AMessageToLoadHasNoValue) {
  const auto request = ORBCefPreferenceRequest::FromLoadValue(_browser, _sender, _arguments);
  ASSERT_TRUE(request);
  EXPECT_EQ("", request->value);
  EXPECT_TRUE(request->is_read);
}

TEST_F(ORBCefPreferenceRequestTest, TooFewArgumentsMakeNoRequest) {
  _arguments->SetSize(3);
  EXPECT_FALSE(ORBCefPreferenceRequest::FromSaveValue(_browser, _sender, _arguments));
  EXPECT_TRUE(ORBCefPreferenceRequest::FromLoadValue(_browser, _sender, _arguments));
  _arguments->SetSize(2);
  EXPECT_FALSE(ORBCefPreferenceRequest::FromLoadValue(_browser, _sender, _arguments));
  EXPECT_FALSE(ORBCefPreferenceRequest::FromLoadValue(_browser, _sender, nullptr));
}

TEST_F(ORBCefPreferenceRequestTest, WithoutAMainFrameThereIsNoRequest) {
  EXPECT_FALSE(ORBCefPreferenceRequest::FromSaveValue(nullptr, _sender, _arguments));
  _browser->main_frame = nullptr;
  EXPECT_FALSE(ORBCefPreferenceRequest::FromSaveValue(_browser, _sender, _arguments));
  EXPECT_FALSE(ORBCefPreferenceRequest::FromLoadValue(_browser, _sender, _arguments));
}

// A page that takes another one's place asks before it is the browser's, and a page that has just
// left may have asked last.
TEST_F(ORBCefPreferenceRequestTest, ThePageThatAskedIsAnsweredAndNotTheOneThatShows) {
  Calls asking;
  _sender = new FrameDouble(asking, "http://next.test/");
  Save();
  Load();
  EXPECT_THAT(asking, SizeIs(2));
  EXPECT_THAT(_browser->calls, IsEmpty());
}

TEST_F(ORBCefPreferenceRequestTest, ASaveResolvesWithUndefined) {
  Save();
  EXPECT_THAT(_tools.Calls(), ElementsAre("save_in_preference ORBCefStore_repo key [1]"));
  EXPECT_THAT(_browser->calls, ElementsAre(Resolved("7, undefined")));
}

TEST_F(ORBCefPreferenceRequestTest, ARefusedSaveRejectsWithTheHostsExpression) {
  _tools.save_result = "new RangeError('full')";
  Save();
  EXPECT_THAT(_browser->calls, ElementsAre(Rejected("7, new RangeError('full')")));
}

TEST_F(ORBCefPreferenceRequestTest, ALoadResolvesWithTheStoredExpressionAsItStands) {
  _tools.preferences[{"ORBCefStore_repo", "key"}] = "{a: 1}, 'second'";
  Load();
  EXPECT_THAT(_browser->calls, ElementsAre(Resolved("7, {a: 1}, 'second'")));
}

TEST_F(ORBCefPreferenceRequestTest, AMissingPreferenceRejects) {
  Load();
  EXPECT_THAT(_browser->calls,
              ElementsAre(Rejected("7, new Error('Failed to read preference key from repository "
                                   "ORBCefStore_repo')")));
}

TEST_F(ORBCefPreferenceRequestTest, AnEmptyPreferenceRejectsLikeAMissingOne) {
  _tools.preferences[{"ORBCefStore_repo", "key"}] = "";
  Load();
  EXPECT_THAT(_browser->calls,
              ElementsAre(Rejected("7, new Error('Failed to read preference key from repository "
                                   "ORBCefStore_repo')")));
}

// What the page then runs is no script, and its promise stays open.
TEST_F(ORBCefPreferenceRequestTest, NothingIsQuotedInTheErrorText) {
  _arguments->SetString(2, "it's");
  Load();
  EXPECT_THAT(_browser->calls,
              ElementsAre(Rejected("7, new Error('Failed to read preference it's from repository "
                                   "ORBCefStore_repo')")));
}

TEST_F(ORBCefPreferenceRequestTest, AnEmptyRepositoryKeepsTheStoresPrefix) {
  _arguments->SetString(1, "");
  Save();
  EXPECT_THAT(_tools.Calls(), ElementsAre("save_in_preference ORBCefStore_ key [1]"));
}

TEST_F(ORBCefPreferenceRequestTest, TextsTravelAsUtf8WithTheirNul) {
  const std::string text("\"\xe2\x82\xac\0\"", 6);
  _arguments->SetString(3, text);
  Save();
  EXPECT_THAT(_tools.Calls(), ElementsAre("save_in_preference ORBCefStore_repo key " + text));
  _tools.preferences[{"ORBCefStore_repo", "key"}] = text;
  Load();
  EXPECT_EQ(Resolved("7, " + text), _browser->calls.back());
}

TEST_F(ORBCefPreferenceRequestTest, AHostThatWantsItsMainThreadGetsATask) {
  _tools.dispatch_on_main_thread = true;
  Save();
  EXPECT_THAT(_tools.Calls(), ElementsAre("post_task_on_main_thread",
                                          "save_in_preference ORBCefStore_repo key [1]"));
  EXPECT_THAT(_browser->calls, ElementsAre(Resolved("7, undefined")));
}

TEST_F(ORBCefPreferenceRequestTest, ATaskThatTheHostRefusesLeavesThePromiseOpenAndNothingBehind) {
  _tools.dispatch_on_main_thread = true;
  _tools.post_task_result = false;
  Save();
  EXPECT_THAT(_tools.Calls(), ElementsAre("post_task_on_main_thread"));
  EXPECT_THAT(_browser->calls, IsEmpty());
  // Only the browser holds its frame: the request was freed.
  _browser->focused_frame = nullptr;
  EXPECT_TRUE(_browser->main_frame->HasOneRef());
}

TEST_F(ORBCefPreferenceRequestTest, NoRecordOfTheHostIsLeft) {
  _tools.save_result = "'no'";
  _tools.preferences[{"ORBCefStore_repo", "key"}] = "1";
  const int before = FakeTools::LiveRecords();
  Save();
  Load();
  EXPECT_EQ(before, FakeTools::LiveRecords());
}

}  // namespace
