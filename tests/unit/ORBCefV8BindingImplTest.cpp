#include "ORBCefV8BindingImpl.h"

#include "Environment.h"
#include "v8_doubles/RendererFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using v8_doubles::Array;
using v8_doubles::Bool;
using v8_doubles::Double;
using v8_doubles::Int;
using v8_doubles::Null;
using v8_doubles::Object;
using v8_doubles::SentMessage;
using v8_doubles::String;
using v8_doubles::Undefined;
using v8_doubles::V8ExceptionDouble;

constexpr char kSizeScript[] = "webapps/ORBCefBindings/snippets/getDocumentSize.js";

CefRefPtr<CefV8Value> SomePosition() {
  return Object({{"url", String("xortv://webapps/a.js")}, {"line", Int(12)}, {"column", Int(5)}});
}

CefRefPtr<CefV8Value> SomeOptions() {
  return Object({{"recordable", Bool(true)}, {"captureAll", Bool(false)}});
}

class ORBCefV8BindingImplTest : public v8_doubles::RendererTest {
 protected:
  // The one message that must have been sent.
  const SentMessage& Only() const {
    EXPECT_EQ(1u, main_frame->sent.size());
    return main_frame->sent.at(0);
  }

  bool Send(const CefV8ValueList& arguments) { return binding->SendStrings(browser, arguments); }

  CefRefPtr<ORBCefV8BindingImpl> binding = new ORBCefV8BindingImpl;
};

class ORBCefV8BindingDocumentSizeTest : public ORBCefV8BindingImplTest {};

TEST_F(ORBCefV8BindingDocumentSizeTest, TheValueOfTheSnippetIsSent) {
  context->outcomes[kSizeScript].value = Object({{"width", Int(640)}, {"height", Int(480)}});
  EXPECT_TRUE(binding->SendDocumentSize(context));
  EXPECT_THAT(context->ScriptNames(), testing::ElementsAre(kSizeScript));
  EXPECT_EQ("DocumentSize", Only().Name());
  EXPECT_EQ(640, Only().Arguments()->GetInt(0));
  EXPECT_EQ(480, Only().Arguments()->GetInt(1));
}

TEST_F(ORBCefV8BindingDocumentSizeTest, AnUndefinedPropertyCountsAsZero) {
  context->outcomes[kSizeScript].value = Object({{"height", Int(480)}});
  EXPECT_TRUE(binding->SendDocumentSize(context));
  EXPECT_EQ(0, Only().Arguments()->GetInt(0));
  EXPECT_EQ(480, Only().Arguments()->GetInt(1));
}

TEST_F(ORBCefV8BindingDocumentSizeTest, AnExceptionIsLoggedAndTheSizeStillSent) {
  context->outcomes[kSizeScript] = {false, Object({{"width", Int(1)}, {"height", Int(2)}}),
                                    new V8ExceptionDouble("no body")};
  bool handled = false;
  const std::string log = CapturedLog([&] { handled = binding->SendDocumentSize(context); });
  EXPECT_TRUE(handled);
  EXPECT_EQ("DocumentSize", Only().Name());
  EXPECT_THAT(log, HasSubstr("[Renderer Process] Browser #7 - Exception on the getDocumentSize "
                             "snippet:\n\tno body"));
  EXPECT_THAT(log, HasSubstr("ERROR"));
}

TEST_F(ORBCefV8BindingDocumentSizeTest, ASnippetWithoutAValueSendsNothing) {
  EXPECT_FALSE(binding->SendDocumentSize(context));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingDocumentSizeTest, TheContextIsLeftAsOftenAsItWasEntered) {
  context->outcomes[kSizeScript].value = Object({});
  EXPECT_TRUE(binding->SendDocumentSize(context));
  EXPECT_EQ(0, context->depth);
  EXPECT_EQ(2, context->exits);
}

TEST_F(ORBCefV8BindingDocumentSizeTest, AContextThatCannotBeEnteredIsNotLeft) {
  context->lets_enter = false;
  context->outcomes[kSizeScript].value = Object({});
  EXPECT_TRUE(binding->SendDocumentSize(context));
  EXPECT_EQ(0, context->exits);
}

TEST_F(ORBCefV8BindingDocumentSizeTest, WithoutAContextOrBrowserNothingRuns) {
  EXPECT_FALSE(binding->SendDocumentSize(nullptr));
  context->browser = nullptr;
  EXPECT_FALSE(binding->SendDocumentSize(context));
  EXPECT_TRUE(context->evaluations.empty());
}

class ORBCefV8BindingZoomTest : public ORBCefV8BindingImplTest {};

TEST_F(ORBCefV8BindingZoomTest, AStepIsSentAsADouble) {
  for (const double step : {2.5, -10.0, 1e-300}) {
    main_frame->sent.clear();
    EXPECT_TRUE(binding->SendZoomChange(browser, Double(step)));
    EXPECT_EQ("OnZoomChanged", Only().Name());
    EXPECT_EQ(step, Only().Arguments()->GetDouble(0));
  }
}

TEST_F(ORBCefV8BindingZoomTest, AnIntegerStepIsSentAsADouble) {
  EXPECT_TRUE(binding->SendZoomChange(browser, Int(3)));
  EXPECT_EQ(VTYPE_DOUBLE, Only().Arguments()->GetType(0));
  EXPECT_EQ(3.0, Only().Arguments()->GetDouble(0));
}

TEST_F(ORBCefV8BindingZoomTest, AStepOfZeroSendsNothing) {
  EXPECT_FALSE(binding->SendZoomChange(browser, Int(0)));
  EXPECT_FALSE(binding->SendZoomChange(browser, Double(-0.0)));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingZoomTest, WhatIsNoNumberSendsNothing) {
  for (const CefRefPtr<CefV8Value>& step : {Undefined(), Null(), String("3"), Object({})}) {
    EXPECT_FALSE(binding->SendZoomChange(browser, step));
  }
  EXPECT_FALSE(binding->SendZoomChange(browser, nullptr));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingZoomTest, WithoutABrowserNothingIsHandled) {
  EXPECT_FALSE(binding->SendZoomChange(nullptr, Int(1)));
}

class ORBCefV8BindingSendStringTest : public ORBCefV8BindingImplTest {};

TEST_F(ORBCefV8BindingSendStringTest, StringsPositionAndOptionsTravelInThisOrder) {
  EXPECT_TRUE(Send({Array({String("a"), String("\xc3\xa9\xf0\x9f\x98\x80"), String("")}),
                    SomePosition(), SomeOptions()}));
  EXPECT_EQ(PID_BROWSER, Only().target);
  EXPECT_EQ("SendString", Only().Name());
  const CefRefPtr<CefListValue> items = Only().Arguments();
  ASSERT_EQ(3u, items->GetSize());

  const CefRefPtr<CefListValue> strings = items->GetList(0);
  ASSERT_TRUE(strings);
  ASSERT_EQ(3u, strings->GetSize());
  EXPECT_EQ("a", strings->GetString(0).ToString());
  EXPECT_EQ("\xc3\xa9\xf0\x9f\x98\x80", strings->GetString(1).ToString());
  EXPECT_EQ(VTYPE_STRING, strings->GetType(2));

  const CefRefPtr<CefDictionaryValue> position = items->GetDictionary(1);
  ASSERT_TRUE(position);
  EXPECT_EQ(3u, position->GetSize());
  EXPECT_EQ("xortv://webapps/a.js", position->GetString("url").ToString());
  EXPECT_EQ(12, position->GetInt("line"));
  EXPECT_EQ(5, position->GetInt("column"));

  const CefRefPtr<CefDictionaryValue> options = items->GetDictionary(2);
  ASSERT_TRUE(options);
  EXPECT_EQ(2u, options->GetSize());
  EXPECT_TRUE(options->GetBool("recordable"));
  EXPECT_FALSE(options->GetBool("captureAll"));
}

TEST_F(ORBCefV8BindingSendStringTest, AnEmptyArrayIsSentAsAnEmptyList) {
  EXPECT_TRUE(Send({Array({}), SomePosition(), SomeOptions()}));
  const CefRefPtr<CefListValue> strings = Only().Arguments()->GetList(0);
  ASSERT_TRUE(strings);
  EXPECT_EQ(0u, strings->GetSize());
}

TEST_F(ORBCefV8BindingSendStringTest, AFourthArgumentLeavesAnEmptyLastItem) {
  EXPECT_TRUE(Send({Array({String("a")}), SomePosition(), SomeOptions(), String("ignored")}));
  ASSERT_EQ(4u, Only().Arguments()->GetSize());
  EXPECT_EQ(VTYPE_NULL, Only().Arguments()->GetType(3));
}

TEST_F(ORBCefV8BindingSendStringTest, FewerThanThreeArgumentsSendNothing) {
  EXPECT_FALSE(Send({}));
  EXPECT_FALSE(Send({Array({String("a")})}));
  EXPECT_FALSE(Send({Array({String("a")}), SomePosition()}));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingSendStringTest, ANumberOrObjectInTheArrayArrivesAsAnEmptyString) {
  EXPECT_TRUE(Send({Array({Int(5), String("b"), Object({})}), SomePosition(), SomeOptions()}));
  const CefRefPtr<CefListValue> strings = Only().Arguments()->GetList(0);
  ASSERT_EQ(3u, strings->GetSize());
  EXPECT_EQ(VTYPE_STRING, strings->GetType(0));
  EXPECT_EQ("", strings->GetString(0).ToString());
  EXPECT_EQ("b", strings->GetString(1).ToString());
  EXPECT_EQ("", strings->GetString(2).ToString());
}

TEST_F(ORBCefV8BindingSendStringTest, WhatIsNoArrayOrHasAMissingElementSendsNothing) {
  for (const CefRefPtr<CefV8Value>& strings :
       {String("a"), Object({}), Undefined(), Null(), Array({String("a"), nullptr})}) {
    EXPECT_FALSE(Send({strings, SomePosition(), SomeOptions()}));
  }
  EXPECT_FALSE(Send({nullptr, SomePosition(), SomeOptions()}));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingSendStringTest, UndefinedPositionPropertiesReadAsZeroAndEmpty) {
  EXPECT_TRUE(Send({Array({}), Object({}), SomeOptions()}));
  const CefRefPtr<CefDictionaryValue> position = Only().Arguments()->GetDictionary(1);
  ASSERT_EQ(3u, position->GetSize());
  EXPECT_EQ("", position->GetString("url").ToString());
  EXPECT_EQ(0, position->GetInt("line"));
  EXPECT_EQ(0, position->GetInt("column"));
}

TEST_F(ORBCefV8BindingSendStringTest, APositionPropertyThatTheEngineDoesNotGiveSendsNothing) {
  for (const char* missing : {"url", "line", "column"}) {
    EXPECT_FALSE(Send({Array({}), Object({{missing, nullptr}}), SomeOptions()})) << missing;
  }
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingSendStringTest, APositionThatIsNoObjectSendsNothing) {
  for (const CefRefPtr<CefV8Value>& position : {String("a"), Undefined(), Null(), Int(1)}) {
    EXPECT_FALSE(Send({Array({}), position, SomeOptions()}));
  }
  EXPECT_FALSE(Send({Array({}), nullptr, SomeOptions()}));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingSendStringTest, UndefinedOptionsAreNotRecordableAndCaptureAll) {
  EXPECT_TRUE(Send({Array({}), SomePosition(), Object({})}));
  const CefRefPtr<CefDictionaryValue> options = Only().Arguments()->GetDictionary(2);
  ASSERT_EQ(2u, options->GetSize());
  EXPECT_FALSE(options->GetBool("recordable"));
  EXPECT_TRUE(options->GetBool("captureAll"));
}

TEST_F(ORBCefV8BindingSendStringTest, AnOptionThatIsNoBoolCountsAsFalse) {
  EXPECT_TRUE(
      Send({Array({}), SomePosition(), Object({{"recordable", Int(1)}, {"captureAll", Null()}})}));
  const CefRefPtr<CefDictionaryValue> options = Only().Arguments()->GetDictionary(2);
  EXPECT_FALSE(options->GetBool("recordable"));
  EXPECT_FALSE(options->GetBool("captureAll"));
}

TEST_F(ORBCefV8BindingSendStringTest, AnOptionThatTheEngineDoesNotGiveSendsNothing) {
  for (const char* missing : {"recordable", "captureAll"}) {
    EXPECT_FALSE(Send({Array({}), SomePosition(), Object({{missing, nullptr}})})) << missing;
  }
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingSendStringTest, OptionsThatAreNoObjectSendNothing) {
  for (const CefRefPtr<CefV8Value>& options : {Bool(true), Undefined(), Null()}) {
    EXPECT_FALSE(Send({Array({}), SomePosition(), options}));
  }
  EXPECT_FALSE(Send({Array({}), SomePosition(), nullptr}));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8BindingSendStringTest, WithoutABrowserNothingIsHandled) {
  EXPECT_FALSE(binding->SendStrings(nullptr, {Array({}), SomePosition(), SomeOptions()}));
}

class ORBCefV8BindingEnvironmentTest : public ORBCefV8BindingImplTest {
 protected:
  CefString value = "before";
};

TEST_F(ORBCefV8BindingEnvironmentTest, AVariableOfTheProcessIsRead) {
  SetEnvironment("ORBCEF_UNIT_TEST_VARIABLE", "caf\xc3\xa9");
  EXPECT_TRUE(binding->ReadEnvironment(String("ORBCEF_UNIT_TEST_VARIABLE"), value));
  EXPECT_EQ("caf\xc3\xa9", value.ToString());
  SetEnvironment("ORBCEF_UNIT_TEST_VARIABLE", nullptr);
}

TEST_F(ORBCefV8BindingEnvironmentTest, TheHostIsNotAskedForTheVariable) {
  tools.Set("ORBCEF_UNIT_TEST_VARIABLE", "the host's");
  SetEnvironment("ORBCEF_UNIT_TEST_VARIABLE", "the process's");
  EXPECT_TRUE(binding->ReadEnvironment(String("ORBCEF_UNIT_TEST_VARIABLE"), value));
  EXPECT_EQ("the process's", value.ToString());
  SetEnvironment("ORBCEF_UNIT_TEST_VARIABLE", nullptr);
}

TEST_F(ORBCefV8BindingEnvironmentTest, AnUnsetVariableReadsAsTheEmptyString) {
  SetEnvironment("ORBCEF_UNIT_TEST_VARIABLE", nullptr);
  EXPECT_TRUE(binding->ReadEnvironment(String("ORBCEF_UNIT_TEST_VARIABLE"), value));
  EXPECT_EQ("", value.ToString());
}

TEST_F(ORBCefV8BindingEnvironmentTest, ANameWithoutTextIsNotHandled) {
  for (const CefRefPtr<CefV8Value>& name : {Null(), Undefined(), String(""), Int(5)}) {
    EXPECT_FALSE(binding->ReadEnvironment(name, value));
  }
  EXPECT_FALSE(binding->ReadEnvironment(nullptr, value));
  EXPECT_EQ("before", value.ToString());
}

// The variable that names the topics is read once per process.
class ORBCefV8BindingLogTopicTest : public ORBCefV8BindingSendStringTest {
 protected:
  void SendInFreshProcess(const char* topics, const CefV8ValueList& arguments, bool expected,
                          const testing::Matcher<const std::string&>& log) {
    fresh_process::Run(
        [&] {
          tools.Set("ORBCEF_LOG", topics);
          EXPECT_EQ(expected, Send(arguments));
        },
        log);
  }
};

TEST_F(ORBCefV8BindingLogTopicTest, WithTheTopicEachStringIsLogged) {
  SendInFreshProcess(
      "info,sendString", {Array({String("a"), Int(1), String("c")}), SomePosition(), SomeOptions()},
      true,
      HasSubstr(
          "[Renderer Process] Browser #7 - SendString arguments:\n\t0 - a\n\t1 - \n\t2 - c\n"));
}

TEST_F(ORBCefV8BindingLogTopicTest, TheStringsAreLoggedEvenIfThePositionSpoilsTheCall) {
  SendInFreshProcess("sendString", {Array({String("a")}), Undefined(), SomeOptions()}, false,
                     HasSubstr("SendString arguments:\n\t0 - a\n"));
}

TEST_F(ORBCefV8BindingLogTopicTest, AnEmptyArrayIsNotLogged) {
  SendInFreshProcess("sendString", {Array({}), SomePosition(), SomeOptions()}, true,
                     Not(HasSubstr("SendString arguments")));
}

TEST_F(ORBCefV8BindingLogTopicTest, WithoutTheTopicNothingIsLogged) {
  SendInFreshProcess("sendstring", {Array({String("a")}), SomePosition(), SomeOptions()}, true,
                     Not(HasSubstr("SendString arguments")));
}

}  // namespace
