#include "ORBCefProcessMessages.h"

#include "v8_doubles/RendererFixture.h"

namespace {

using v8_doubles::SentMessage;

class ORBCefProcessMessagesTest : public v8_doubles::RendererTest {};

TEST_F(ORBCefProcessMessagesTest, TheNamesOnTheWireAreFixed) {
  using namespace ORBCefMessage;
  EXPECT_THAT(
      (std::vector<std::string>{kV8Context,
                                kFocusedNodeChanged,
                                kDeferAddEventListeners,
                                kOnDOMContentLoaded,
                                kOnLoad,
                                kOnUnload,
                                kOnZoomChanged,
                                kOnZoomReset,
                                kDocumentSize,
                                kSendString,
                                kLoadHome,
                                kOpenDevTools,
                                kCloseDevTools,
                                kSaveValue,
                                kLoadValue,
                                kRecordData,
                                kReplayQuery,
                                kReplayResult,
                                kReplayAbort,
                                kOnInterpreterLoaded,
                                kRecordableDoc}),
      testing::ElementsAre("V8Context", "FocusedNodeChanged", "DeferAddEventListeners",
                           "OnDOMContentLoaded", "OnLoad", "OnUnload", "OnZoomChanged",
                           "OnZoomReset", "DocumentSize", "SendString", "LoadHome", "OpenDevTools",
                           "CloseDevTools", "SaveValue", "LoadValue", "RecordData", "ReplayQuery",
                           "ReplayResult", "ReplayAbort", "OnInterpreterLoaded", "RecordableDoc"));
}

TEST_F(ORBCefProcessMessagesTest, CreateSizesTheArgumentListExactly) {
  for (const std::size_t count : {0, 1, 2, 4}) {
    const CefRefPtr<CefProcessMessage> message = ORBCefMessage::Create("SaveValue", count);
    ASSERT_TRUE(message);
    EXPECT_EQ("SaveValue", message->GetName().ToString());
    EXPECT_EQ(count, message->GetArgumentList()->GetSize());
  }
}

TEST_F(ORBCefProcessMessagesTest, APlainMessageGoesToTheBrowserProcessWithoutArguments) {
  EXPECT_TRUE(ORBCefMessage::SendPlain(browser, "OnLoad"));
  ASSERT_EQ(1u, main_frame->sent.size());
  const SentMessage& sent = main_frame->sent.front();
  EXPECT_EQ(PID_BROWSER, sent.target);
  EXPECT_EQ("OnLoad", sent.Name());
  EXPECT_EQ(0u, sent.Arguments()->GetSize());
}

TEST_F(ORBCefProcessMessagesTest, AFlagTravelsAsOneBool) {
  for (const bool flag : {true, false}) {
    main_frame->sent.clear();
    EXPECT_TRUE(ORBCefMessage::SendFlag(browser, "V8Context", flag));
    ASSERT_EQ(1u, main_frame->sent.size());
    const SentMessage& sent = main_frame->sent.front();
    EXPECT_EQ(PID_BROWSER, sent.target);
    EXPECT_EQ("V8Context", sent.Name());
    ASSERT_EQ(1u, sent.Arguments()->GetSize());
    EXPECT_EQ(VTYPE_BOOL, sent.Arguments()->GetType(0));
    EXPECT_EQ(flag, sent.Arguments()->GetBool(0));
  }
}

TEST_F(ORBCefProcessMessagesTest, AZoomStepTravelsAsOneDouble) {
  EXPECT_TRUE(ORBCefMessage::SendZoomChanged(browser, -2.5));
  ASSERT_EQ(1u, main_frame->sent.size());
  const SentMessage& sent = main_frame->sent.front();
  EXPECT_EQ("OnZoomChanged", sent.Name());
  ASSERT_EQ(1u, sent.Arguments()->GetSize());
  EXPECT_EQ(VTYPE_DOUBLE, sent.Arguments()->GetType(0));
  EXPECT_EQ(-2.5, sent.Arguments()->GetDouble(0));
}

TEST_F(ORBCefProcessMessagesTest, ADocumentSizeTravelsAsWidthThenHeight) {
  EXPECT_TRUE(ORBCefMessage::SendDocumentSize(browser, 800, 600));
  ASSERT_EQ(1u, main_frame->sent.size());
  const SentMessage& sent = main_frame->sent.front();
  EXPECT_EQ("DocumentSize", sent.Name());
  ASSERT_EQ(2u, sent.Arguments()->GetSize());
  EXPECT_EQ(800, sent.Arguments()->GetInt(0));
  EXPECT_EQ(600, sent.Arguments()->GetInt(1));
}

TEST_F(ORBCefProcessMessagesTest, ARequestToSaveTravelsAsKeyOriginNameAndValue) {
  EXPECT_TRUE(ORBCefMessage::SendSaveValue(browser, 3, "o", "n", "v"));
  ASSERT_EQ(1u, main_frame->sent.size());
  const SentMessage& sent = main_frame->sent.front();
  EXPECT_EQ(PID_BROWSER, sent.target);
  EXPECT_EQ("SaveValue", sent.Name());
  ASSERT_EQ(4u, sent.Arguments()->GetSize());
  EXPECT_EQ(VTYPE_INT, sent.Arguments()->GetType(0));
  EXPECT_EQ(3, sent.Arguments()->GetInt(0));
  EXPECT_EQ("o", sent.Arguments()->GetString(1).ToString());
  EXPECT_EQ("n", sent.Arguments()->GetString(2).ToString());
  EXPECT_EQ("v", sent.Arguments()->GetString(3).ToString());
}

TEST_F(ORBCefProcessMessagesTest, ARequestToLoadTravelsAsKeyOriginAndName) {
  EXPECT_TRUE(ORBCefMessage::SendLoadValue(browser, 2147483647, "o", "n"));
  ASSERT_EQ(1u, main_frame->sent.size());
  const SentMessage& sent = main_frame->sent.front();
  EXPECT_EQ("LoadValue", sent.Name());
  ASSERT_EQ(3u, sent.Arguments()->GetSize());
  EXPECT_EQ(2147483647, sent.Arguments()->GetInt(0));
  EXPECT_EQ("o", sent.Arguments()->GetString(1).ToString());
  EXPECT_EQ("n", sent.Arguments()->GetString(2).ToString());
}

TEST_F(ORBCefProcessMessagesTest, WithoutABrowserNothingCountsAsSent) {
  EXPECT_FALSE(ORBCefMessage::SendSaveValue(nullptr, 1, "o", "n", "v"));
  EXPECT_FALSE(ORBCefMessage::SendLoadValue(nullptr, 1, "o", "n"));
  EXPECT_FALSE(ORBCefMessage::SendPlain(nullptr, "OnLoad"));
  EXPECT_FALSE(ORBCefMessage::SendFlag(nullptr, "V8Context", true));
  EXPECT_FALSE(ORBCefMessage::SendZoomChanged(nullptr, 1));
  EXPECT_FALSE(ORBCefMessage::SendDocumentSize(nullptr, 1, 1));
  ORBCefMessage::SendToBrowser(nullptr, ORBCefMessage::Create("OnLoad", 0));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefProcessMessagesTest, ABrowserWithoutAMainFrameSwallowsTheMessage) {
  browser->main = nullptr;
  EXPECT_TRUE(ORBCefMessage::SendPlain(browser, "OnLoad"));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefProcessMessagesTest, AMissingMessageIsNotSent) {
  ORBCefMessage::SendToBrowser(browser, nullptr);
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefProcessMessagesTest, MessagesKeepTheOrderOfTheCalls) {
  ORBCefMessage::SendPlain(browser, "OnDOMContentLoaded");
  ORBCefMessage::SendFlag(browser, "V8Context", false);
  ORBCefMessage::SendPlain(browser, "OnUnload");
  ASSERT_THAT(SentNames(), testing::ElementsAre("OnDOMContentLoaded", "V8Context", "OnUnload"));
}

}  // namespace
