#include "platform/Clipboard.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Clipboard.h"

#if defined(_WIN32)
#include <windows.h>

#include <cstring>
#else
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "Environment.h"
#include "FreshProcess.h"
#endif

namespace {

class PlatformClipboardTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!clipboard::Exists())
      GTEST_SKIP() << "There is no X server.";
  }

  static bool Put(const std::u16string& text, size_t bytes) {
    return platform::SetClipboardText(text.c_str(), bytes);
  }
};

TEST_F(PlatformClipboardTest, TheBytesAreCountedAndNotTheUnits) {
  EXPECT_TRUE(Put(u"abcdef", 6));
  EXPECT_EQ(clipboard::Text(), clipboard::Arriving("abc"));
}

TEST_F(PlatformClipboardTest, HalfOfAUnitIsNoCharacter) {
  EXPECT_TRUE(Put(u"abcdef", 7));
  EXPECT_EQ(clipboard::Text(), "abc");
}

TEST_F(PlatformClipboardTest, TheLastTextCounts) {
  EXPECT_TRUE(Put(u"first", 10));
  EXPECT_TRUE(Put(u"second", 12));
  EXPECT_EQ(clipboard::Text(), clipboard::Arriving("second"));
}

#if defined(_WIN32)

class OpenClipboardScope {
 public:
  OpenClipboardScope() { EXPECT_TRUE(OpenClipboard(nullptr)); }
  ~OpenClipboardScope() { CloseClipboard(); }
};

TEST_F(PlatformClipboardTest, TheBlockIsAsLongAsItsBytes) {
  EXPECT_TRUE(Put(u"abcdef", 7));
  const OpenClipboardScope scope;
  const HANDLE block = GetClipboardData(CF_UNICODETEXT);
  ASSERT_TRUE(block);
  EXPECT_LT(GlobalSize(block), 2 * std::strlen("abcdef"));
  // The system's zero stands in the last two bytes.
  EXPECT_EQ(0, std::memcmp(GlobalLock(block), u"abc", 7));
  GlobalUnlock(block);
}

// Meant: the clipboard is never emptied.
TEST_F(PlatformClipboardTest, OtherFormatsStay) {
  const UINT other = RegisterClipboardFormatW(L"ORBCefClipboardTest");
  {
    const OpenClipboardScope scope;
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 4);
    EXPECT_EQ(SetClipboardData(other, block), block);
  }
  EXPECT_TRUE(Put(u"text", 8));
  EXPECT_TRUE(IsClipboardFormatAvailable(other));
  EXPECT_EQ(clipboard::Text(), clipboard::Arriving("text"));
}

TEST_F(PlatformClipboardTest, WithoutMemoryNothingIsSetAndTheClipboardIsClosed) {
  EXPECT_TRUE(Put(u"before", 12));
  EXPECT_FALSE(Put(u"x", ~size_t{0} / 2));
  // An open one would refuse.
  EXPECT_EQ(clipboard::Text(), clipboard::Arriving("before"));
}

#else

// Waits until the process has as many threads as before; false after ten seconds.
bool WaitForThreads(size_t count) {
  const auto threads = [] {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<size_t>(std::distance(begin(tasks), end(tasks)));
  };
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (threads() != count && std::chrono::steady_clock::now() < deadline) {
    // The system tells of no event for the end of a thread.
    std::this_thread::yield();
  }
  return threads() == count;
}

TEST_F(PlatformClipboardTest, AllNamesOfTheTextGiveTheSame) {
  EXPECT_TRUE(Put(u"abcd", 8));
  EXPECT_EQ(clipboard::Text("UTF8_STRING"), "abcd");
  EXPECT_EQ(clipboard::Text("STRING"), "abcd");
  EXPECT_EQ(clipboard::Text("TARGETS"), "TARGETS TIMESTAMP UTF8_STRING STRING ");
  EXPECT_EQ(clipboard::Text("TIMESTAMP")->size(), 4u);
}

TEST_F(PlatformClipboardTest, WhatItHasNotIsRefused) {
  EXPECT_TRUE(Put(u"abcd", 8));
  EXPECT_EQ(clipboard::Text("image/png"), std::nullopt);
}

TEST_F(PlatformClipboardTest, NoTextIsAnEmptyText) {
  EXPECT_TRUE(Put(u"", 0));
  EXPECT_EQ(clipboard::Text(), "");
  EXPECT_TRUE(Put(u"", 1));
  EXPECT_EQ(clipboard::Text(), "");
}

TEST_F(PlatformClipboardTest, EveryPlaneArrivesAsUtf8) {
  EXPECT_TRUE(Put(u"a\u00E4\u20AC\U0001F600", 10));
  EXPECT_EQ(clipboard::Text(), "a\u00E4\u20AC\U0001F600");
}

TEST_F(PlatformClipboardTest, HalfOfAPairIsLeftOut) {
  EXPECT_TRUE(Put(u"a\U0001F600", 5));
  EXPECT_EQ(clipboard::Text(), "a");
  EXPECT_TRUE(Put(std::u16string(u"a\xDE00z\xD83Dz"), 10));
  EXPECT_EQ(clipboard::Text(), "azz");
}

TEST_F(PlatformClipboardTest, ATextThatFitsIntoNoRequestIsRefusedAndTheOldOneStays) {
  EXPECT_TRUE(Put(u"before", 12));
  const std::u16string huge(size_t{1} << 25, u'x');
  EXPECT_FALSE(Put(huge, huge.size() * sizeof(char16_t)));
  EXPECT_EQ(clipboard::Text(), "before");
}

TEST_F(PlatformClipboardTest, ALargeTextArrivesWhole) {
  const std::u16string large(size_t{1} << 20, u'x');
  EXPECT_TRUE(Put(large, large.size() * sizeof(char16_t)));
  EXPECT_EQ(clipboard::Text(), std::string(large.size(), 'x'));
}

TEST_F(PlatformClipboardTest, WhoAsksWhileTheTextChangesGetsAnAnswer) {
  constexpr int kTimes = 100;
  EXPECT_TRUE(Put(u"abcd", 8));
  clipboard::Reader reader;
  int answers = 0;
  std::thread asking([&] {
    while (answers < kTimes && reader.Text() == "abcd") ++answers;
  });
  for (int i = 0; i < kTimes; ++i) {
    EXPECT_TRUE(Put(u"abcd", 8));
  }
  asking.join();
  EXPECT_EQ(answers, kTimes);
}

TEST_F(PlatformClipboardTest, ItsThreadEndsWhenAnotherProgramTakesTheClipboard) {
#if defined(__SANITIZE_THREAD__)
  // The sanitizer starts one of its own beside the program's first.
  constexpr size_t kOthers = 2;
#else
  constexpr size_t kOthers = 1;
#endif
  fresh_process::Run([] {
    EXPECT_TRUE(WaitForThreads(1));
    EXPECT_TRUE(Put(u"abcd", 8));
    EXPECT_TRUE(Put(u"efgh", 8));
    EXPECT_TRUE(WaitForThreads(kOthers + 1));
    const clipboard::OtherOwner other;
    EXPECT_TRUE(WaitForThreads(kOthers));
  });
}

TEST_F(PlatformClipboardTest, AProcessEndsWithItsClipboard) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const bool is_put = Put(u"abcd", 8) && clipboard::Text() == "abcd";
        // With all destructors, and the thread among them.
        std::exit(is_put ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
  EXPECT_EQ(clipboard::Text(), std::nullopt);
}

TEST(PlatformClipboardWithoutServerTest, NothingIsPutAndNothingHangs) {
  fresh_process::Run([] {
    SetEnvironment("DISPLAY", ":4242");
    EXPECT_FALSE(platform::SetClipboardText(u"abcd", 8));
    SetEnvironment("DISPLAY", nullptr);
    EXPECT_FALSE(platform::SetClipboardText(u"abcd", 8));
    EXPECT_TRUE(WaitForThreads(1));
  });
}

#endif

}  // namespace
