#include "ORBCefFixedText.h"

#include <gtest/gtest.h>

#include "include/cef_values.h"

namespace {

constexpr ORBCefFixedText kText("captureAll");
constexpr ORBCefFixedText kEmpty("");

TEST(ORBCefFixedTextTest, TheTextIsTheLiteral) {
  EXPECT_EQ("captureAll", kText.Text().ToString());
  EXPECT_EQ(10u, kText.Text().length());
  EXPECT_TRUE(kEmpty.Text().empty());
}

TEST(ORBCefFixedTextTest, TheTextIsReferredToAndNotCopied) {
  EXPECT_EQ(kText.Text().c_str(), kText.Text().c_str());
  EXPECT_FALSE(kText.Text().IsOwner());
}

TEST(ORBCefFixedTextTest, TheEngineTakesItAsAKey) {
  const CefRefPtr<CefDictionaryValue> dictionary = CefDictionaryValue::Create();
  dictionary->SetInt(kText.Text(), 3);
  EXPECT_EQ(3, dictionary->GetInt("captureAll"));
}

}  // namespace
