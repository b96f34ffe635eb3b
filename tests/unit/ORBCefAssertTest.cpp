#include "ORBCefAssert.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(ORBCefAssertTest, ACheckThatHoldsSaysNothing) {
  FakeTools tools;
  EXPECT_EQ("", CapturedLog([] { EXPECT_TRUE(ORBCefCheck(true, "a", "b", 1)); }));
}

TEST(ORBCefAssertTest, AFailedCheckOfAnOrdinaryRunIsReportedAndGoesOn) {
  fresh_process::Run(
      [] {
        FakeTools tools;
        EXPECT_FALSE(ORBCefCheck(false, "x!=0", "some/path", 12));
      },
      AllOf(HasSubstr("ERROR"), HasSubstr("x!=0 in some/path line 12\n")));
}

TEST(ORBCefAssertTest, AFailedCheckInATestRigEndsTheProcess) {
  for (const char* variable : {"QVL_RIG_TMP", "ORBCEF_RECORD"}) {
    fresh_process::ExpectDeath(
        [&] {
          FakeTools tools;
          tools.Set(variable, "");
          ORBCefCheck(false, "x!=0", "some/path", 12);
        },
        HasSubstr("x!=0 in some/path line 12\n"));
  }
}

TEST(ORBCefAssertTest, TheRigIsAskedForOncePerProcess) {
  fresh_process::Run([] {
    FakeTools tools;
    EXPECT_FALSE(ORBCefCheck(false, "a", "b", 1));
    tools.Set("QVL_RIG_TMP", "/rig");
    EXPECT_FALSE(ORBCefCheck(false, "a", "b", 1));
  });
}

TEST(ORBCefAssertTest, TheFixedSitesAreReportedByTheirNumbers) {
  FakeTools tools;
  const auto report = [](const ORBCefCheckSite& site) {
    return CapturedLog([&] { ORBCefCheck(false, site); });
  };
  EXPECT_THAT(
      report(ORBCefCheckSites::kBrowserTable),
      HasSubstr("iCStruct!=0 in "
                "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefPluginClient line 17\n"));
  EXPECT_THAT(report(ORBCefCheckSites::kHttpTable),
              HasSubstr("iCStruct in "
                        "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefPluginHttp line 20\n"));
  EXPECT_THAT(report(ORBCefCheckSites::kHttpInstance),
              HasSubstr("tImpl in "
                        "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefPluginHttp line 22\n"));
  EXPECT_THAT(report(ORBCefCheckSites::kTools),
              HasSubstr("_tools in "
                        "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefTools line 44\n"));
  EXPECT_THAT(report(ORBCefCheckSites::kHostTable),
              HasSubstr("_p!=0 in ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/LocalInterfaces/"
                        "ORBCefToolsWrapperMT line 209\n"));
  EXPECT_THAT(report(ORBCefCheckSites::kMapCount),
              HasSubstr("ret->_nb_values==nbElem in ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/"
                        "ORBCefConversionToolsWrapperMT line 100\n"));
}

}  // namespace
