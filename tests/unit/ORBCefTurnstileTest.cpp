#include "ORBCefTurnstile.h"

#include <gtest/gtest.h>

#include "FakeTools.h"
#include "engine_doubles/HostDoubles.h"

namespace {

class ORBCefTurnstileTest : public testing::Test {
 protected:
  FakeTools _tools;
  void TearDown() override { EXPECT_EQ(FakeTools::LiveRecords(), 0); }

  static std::string Url() {
    return ORBCefTurnstile::GetTurnstileUrl(ORBCefTurnstile::kServiceKey);
  }
};

TEST_F(ORBCefTurnstileTest, ReadsTheSettingOfTheService) {
  _tools.sys_settings[{"7DAstrolabeAccess", "7DTurnstile_URL"}] = "https://sso.test/";
  EXPECT_EQ(Url(), "https://sso.test/");
  EXPECT_EQ(ORBCefTurnstile::GetTurnstileUrl("Other"), "");
}

TEST_F(ORBCefTurnstileTest, TheEnvironmentWins) {
  _tools.sys_settings[{"7DAstrolabeAccess", "7DTurnstile_URL"}] = "https://sso.test/";
  _tools.Set("ORBCEF_TURNSTILE_URL", "https://other.test/");
  EXPECT_EQ(Url(), "https://other.test/");
}

TEST_F(ORBCefTurnstileTest, AVariableSetToNothingWinsToo) {
  _tools.sys_settings[{"7DAstrolabeAccess", "7DTurnstile_URL"}] = "https://sso.test/";
  _tools.Set("ORBCEF_TURNSTILE_URL", "");
  EXPECT_EQ(Url(), "");
}

TEST_F(ORBCefTurnstileTest, NothingConfiguredGivesNothing) {
  EXPECT_EQ(Url(), "");
}

}  // namespace
