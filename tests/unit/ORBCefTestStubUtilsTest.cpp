#include "ORBCefTestStubUtils.h"

#include <atomic>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "LoopbackDouble.h"
#include "platform/Files.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace Stub = ORBCefTestStubUtils;
using platform::Loopback;

constexpr char kBrowser[] = "[Browser Process] ";
constexpr char kChild[] = "[Renderer Process] ";

std::string Path(std::initializer_list<const char*> entries) {
  std::string path;
  for (const char* entry : entries)
    path += (path.empty() ? "" : std::string(1, platform::kPathListSeparator)) + entry;
  return path;
}

std::string Error(const char* prefix, const char* call) {
  return prefix + std::string(call) + " failed: " + std::to_string(LoopbackDouble::kError) + "\n";
}

// The state is one for a process, so each test of PATH has a process of its own.
void WithPath(const std::function<void(FakeTools& tools)>& body,
              const testing::Matcher<const std::string&>& log = testing::_,
              int line = __builtin_LINE()) {
  fresh_process::Run(
      [&] {
        FakeTools tools;
        tools.Set("PATH_TEST", "/stubs");
        tools.Set("PATH", Path({"/a", "/stubs", "/b"}));
        body(tools);
      },
      log, line);
}

TEST(ORBCefTestStubUtilsTest, TheRunIsInstrumentedUnderATool) {
  FakeTools tools;
  EXPECT_FALSE(Stub::IsInstrumentedRun());
  tools.Set("QVL_RIG_EXECTOOL", "x-MemoryCheck-y");
  EXPECT_TRUE(Stub::IsInstrumentedRun());
  tools.Set("QVL_RIG_EXECTOOL", "");
  EXPECT_FALSE(Stub::IsInstrumentedRun());
  tools.Set("ReplayPurcov", "");
  EXPECT_TRUE(Stub::IsInstrumentedRun());
}

TEST(ORBCefTestStubUtilsTest, TheStubDirectoryGoesAndComesBack) {
  WithPath(
      [](FakeTools& tools) {
        EXPECT_TRUE(Stub::RemoveStubDirectoryFromPath());
        EXPECT_EQ(Path({"/a", "/b"}), tools.Get("PATH"));
        EXPECT_TRUE(Stub::RestorePath());
        EXPECT_EQ(Path({"/a", "/stubs", "/b"}), tools.Get("PATH"));
      },
      AllOf(HasSubstr("WARNING"),
            HasSubstr("[Browser Process] Removing stub directory from PATH (found in PATH_TEST) to "
                      "avoid interfering with IPC between CEF processes: /stubs\n"),
            HasSubstr("[Browser Process] Restoring PATH...\n")));
}

TEST(ORBCefTestStubUtilsTest, OfOverlappingLaunchesTheLastReportRestores) {
  WithPath(
      [](FakeTools& tools) {
        EXPECT_TRUE(Stub::RemoveStubDirectoryFromPath());
        EXPECT_TRUE(Stub::RemoveStubDirectoryFromPath());
        EXPECT_THAT(tools.Calls(), ElementsAre("put_env PATH=" + Path({"/a", "/b"})));
        EXPECT_TRUE(Stub::RestorePath());
        EXPECT_EQ(Path({"/a", "/b"}), tools.Get("PATH"));
        EXPECT_TRUE(Stub::RestorePath());
        EXPECT_EQ(Path({"/a", "/stubs", "/b"}), tools.Get("PATH"));
      },
      AllOf(HasSubstr("[Browser Process] Indicator says PATH_TEST was already removed. Not "
                      "modifying PATH this time: 2\n"),
            HasSubstr("[Browser Process] Still waiting to restore PATH: 1\n")));
}

TEST(ORBCefTestStubUtilsTest, OnlyExactEntriesGo) {
  WithPath([](FakeTools& tools) {
    tools.Set("PATH", Path({"/Stubs", "/stubs/", "/stubs", "/stubs2", "/stubs"}));
    EXPECT_TRUE(Stub::RemoveStubDirectoryFromPath());
    EXPECT_EQ(Path({"/Stubs", "/stubs/", "/stubs2"}), tools.Get("PATH"));
  });
}

TEST(ORBCefTestStubUtilsTest, AnEmptyStubDirectoryIsAnErrorAndKeepsTheIndicatorRaised) {
  WithPath(
      [](FakeTools& tools) {
        tools.Unset("PATH_TEST");
        EXPECT_FALSE(Stub::RemoveStubDirectoryFromPath());
        EXPECT_TRUE(Stub::RemoveStubDirectoryFromPath());
        EXPECT_THAT(tools.Calls(), IsEmpty());
      },
      AllOf(HasSubstr("[Browser Process] Could not find stub directory: PATH_TEST is empty\n"),
            HasSubstr("Not modifying PATH this time: 2\n")));
}

TEST(ORBCefTestStubUtilsTest, TheStubDirectoryIsReadOnce) {
  WithPath([](FakeTools& tools) {
    EXPECT_TRUE(Stub::RemoveStubDirectoryFromPath());
    EXPECT_TRUE(Stub::RestorePath());
    tools.Set("PATH_TEST", "/a");
    EXPECT_TRUE(Stub::RemoveStubDirectoryFromPath());
    EXPECT_EQ(Path({"/a", "/b"}), tools.Get("PATH"));
  });
}

TEST(ORBCefTestStubUtilsTest, AnEmptyPathCannotBeSaved) {
  WithPath(
      [](FakeTools& tools) {
        tools.Set("PATH", "");
        EXPECT_FALSE(Stub::RemoveStubDirectoryFromPath());
        EXPECT_THAT(tools.Calls(), IsEmpty());
        EXPECT_FALSE(Stub::RestorePath());
      },
      AllOf(HasSubstr("[Browser Process] Failed to save PATH: variable is empty\n"),
            HasSubstr("[Browser Process] Failed to fetch value of PATH\n"),
            HasSubstr("[Browser Process] Restoration of PATH failed: backup is empty\n")));
}

TEST(ORBCefTestStubUtilsTest, AnEmptyPathKeepsTheOldSavedValue) {
  WithPath([](FakeTools& tools) {
    EXPECT_TRUE(Stub::SavePath());
    tools.Unset("PATH");
    EXPECT_FALSE(Stub::RemoveStubDirectoryFromPath());
    EXPECT_TRUE(Stub::RestorePath());
    EXPECT_EQ(Path({"/a", "/stubs", "/b"}), tools.Get("PATH"));
  });
}

TEST(ORBCefTestStubUtilsTest, TheHostsRefusalIsTheAnswer) {
  WithPath([](FakeTools& tools) {
    tools.put_env_result = -1;
    EXPECT_FALSE(Stub::RemoveStubDirectoryFromPath());
    EXPECT_FALSE(Stub::RestorePath());
  });
}

// A listener on a port, and a child's side that sends what a test wants.
class StubPortTest : public testing::Test {
 protected:
  void Open() {
    port = Stub::OpenStubPort(
        "subprocess:created", [this] { ++callbacks; }, sockets);
    ASSERT_GT(port, 0);
    ASSERT_TRUE(sockets.WaitFor("Listen"));
  }
  void Connect() {
    child = Loopback::System().Open();
    ASSERT_TRUE(Loopback::System().Connect(child, port));
    ASSERT_TRUE(sockets.WaitFor("Accept"));
  }
  // Sends one piece and waits until the listener has received it.
  void Send(const std::string& piece) {
    const int before = sockets.Count("Receive");
    ASSERT_EQ(static_cast<int>(piece.size()),
              Loopback::System().Send(child, piece.data(), piece.size()));
    ASSERT_TRUE(sockets.WaitFor("Receive", before + 1));
  }
  // Closes the child's side and waits for the end of the listener.
  void Close() {
    ASSERT_TRUE(Loopback::System().Close(child));
    ASSERT_TRUE(sockets.WaitFor("Stop"));
  }

  FakeTools tools;
  LoopbackDouble sockets;
  std::atomic<int> callbacks{0};
  int port = 0;
  Loopback::Socket child = Loopback::kNoSocket;
};

TEST_F(StubPortTest, TheMessageRunsTheCallback) {
  const std::string log = CapturedLog([&] {
    Open();
    EXPECT_TRUE(Stub::SendStubMessage(port, "subprocess:created"));
    ASSERT_TRUE(sockets.WaitFor("Stop"));
  });
  EXPECT_EQ(1, callbacks);
  EXPECT_THAT(log, HasSubstr("WARNING"));
  EXPECT_THAT(log, HasSubstr("[Browser Process] Closing connection on port " +
                             std::to_string(port) + "\n"));
  EXPECT_THAT(log, Not(HasSubstr("failed")));
}

TEST_F(StubPortTest, TheHandshakeHasEighteenCharacters) {
  EXPECT_EQ(18u, std::string(Stub::kCreatedMessage).size());
}

TEST_F(StubPortTest, AMessageInTwoPiecesNeverMatches) {
  Open();
  Connect();
  Send("subprocess");
  Send(":created");
  Close();
  EXPECT_EQ(0, callbacks);
}

TEST_F(StubPortTest, OtherDataIsIgnoredUntilThePeerCloses) {
  Open();
  Connect();
  Send("something else");
  Send(std::string("subprocess:created\0", 19));
  EXPECT_EQ(0, callbacks);
  Send("subprocess:created");
  Send("subprocess:created");
  Close();
  EXPECT_EQ(2, callbacks);
}

TEST_F(StubPortTest, OnePieceIsAtMostThirtyTwoBytes) {
  Open();
  Connect();
  const std::string message = std::string(32, 'x') + "subprocess:created";
  ASSERT_EQ(static_cast<int>(message.size()),
            Loopback::System().Send(child, message.data(), message.size()));
  ASSERT_TRUE(sockets.WaitFor("Receive", 2));
  Close();
  EXPECT_EQ(1, callbacks);
}

TEST_F(StubPortTest, ThePortServesASingleChild) {
  Open();
  Connect();
  ASSERT_TRUE(sockets.WaitFor("Close"));
  bool sent = true;
  const std::string log =
      CapturedLog([&] { sent = Stub::SendStubMessage(port, "subprocess:created"); });
  EXPECT_FALSE(sent);
  EXPECT_THAT(log, HasSubstr("[Renderer Process] connect failed: "));
  Close();
  EXPECT_EQ(0, callbacks);
}

TEST_F(StubPortTest, EverySocketIsClosedAndEveryStartIsStopped) {
  Open();
  Connect();
  Close();
  // The listening socket and the child's.
  EXPECT_EQ(2, sockets.Count("Close"));
  EXPECT_EQ(1, sockets.Count("Start"));
  EXPECT_EQ(1, sockets.Count("Stop"));
}

// A fault before the listener's thread starts.
struct OpenFault {
  const char* step;
  const char* call;
  int closes;
  int stops;
};

class StubPortOpenFaultTest : public testing::TestWithParam<OpenFault> {};

TEST_P(StubPortOpenFaultTest, IsLoggedAndLeavesNothingOpen) {
  const OpenFault& fault = GetParam();
  LoopbackDouble sockets;
  sockets.Fail(fault.step);
  int port = 0;
  const std::string log = CapturedLog([&] {
    port = Stub::OpenStubPort(
        "x", [] {}, sockets);
  });
  EXPECT_EQ(-1, port);
  EXPECT_THAT(log, AllOf(HasSubstr("ERROR"), HasSubstr(Error(kBrowser, fault.call))));
  EXPECT_EQ(fault.closes, sockets.Count("Close"));
  EXPECT_EQ(fault.stops, sockets.Count("Stop"));
}

INSTANTIATE_TEST_SUITE_P(All, StubPortOpenFaultTest,
                         testing::Values(OpenFault{"Start", "WSAStartup", 0, 0},
                                         OpenFault{"Open", "socket", 0, 1},
                                         OpenFault{"Bind", "bind", 1, 1},
                                         OpenFault{"BoundPort", "getsockname", 1, 1}),
                         [](const auto& info) { return std::string(info.param.step); });

TEST_F(StubPortTest, AFailedListenEndsTheThread) {
  sockets.Fail("Listen");
  const std::string log = CapturedLog([&] {
    port = Stub::OpenStubPort(
        "x", [this] { ++callbacks; }, sockets);
    ASSERT_TRUE(sockets.WaitFor("Stop"));
  });
  EXPECT_GT(port, 0);
  EXPECT_THAT(log, HasSubstr(Error(kBrowser, "listen")));
  EXPECT_EQ(0, sockets.Count("Accept"));
  EXPECT_EQ(1, sockets.Count("Close"));
}

TEST_F(StubPortTest, AFailedAcceptEndsTheThread) {
  sockets.Fail("Accept");
  const std::string log = CapturedLog([&] {
    port = Stub::OpenStubPort(
        "x", [this] { ++callbacks; }, sockets);
    ASSERT_TRUE(sockets.WaitFor("Stop"));
  });
  EXPECT_THAT(log, HasSubstr(Error(kBrowser, "accept")));
  EXPECT_EQ(0, sockets.Count("Receive"));
  EXPECT_EQ(1, sockets.Count("Close"));
}

TEST_F(StubPortTest, AFailedReceiveIsLoggedInsteadOfTheEnd) {
  sockets.Fail("Receive");
  const std::string log = CapturedLog([&] {
    Open();
    Connect();
    Close();
  });
  EXPECT_THAT(log, HasSubstr(Error(kBrowser, "recv")));
  EXPECT_THAT(log, Not(HasSubstr("Closing connection")));
  EXPECT_EQ(0, sockets.Count("ShutdownBoth"));
  EXPECT_EQ(2, sockets.Count("Close"));
}

TEST_F(StubPortTest, AFailedShutdownIsLogged) {
  sockets.Fail("ShutdownBoth");
  const std::string log = CapturedLog([&] {
    Open();
    Connect();
    Close();
  });
  EXPECT_THAT(log, HasSubstr("Closing connection"));
  EXPECT_THAT(log, HasSubstr(Error(kBrowser, "shutdown")));
}

// A fault on the child's side.
class SendStubMessageTest : public StubPortTest {
 protected:
  bool Send(const std::string& step) {
    child_sockets.Fail(step);
    bool sent = false;
    log = CapturedLog([&] { sent = Stub::SendStubMessage(port, "x", child_sockets); });
    return sent;
  }

  LoopbackDouble child_sockets;
  std::string log;
};

TEST_F(SendStubMessageTest, AFailedStartIsAFailure) {
  EXPECT_FALSE(Send("Start"));
  EXPECT_THAT(log, HasSubstr(Error(kChild, "WSAStartup")));
  EXPECT_EQ(0, child_sockets.Count("Stop"));
}

TEST_F(SendStubMessageTest, AFailedSocketIsAFailure) {
  EXPECT_FALSE(Send("Open"));
  EXPECT_THAT(log, HasSubstr(Error(kChild, "socket")));
  EXPECT_EQ(1, child_sockets.Count("Stop"));
}

TEST_F(SendStubMessageTest, AFailedConnectIsAFailure) {
  EXPECT_FALSE(Send("Connect"));
  EXPECT_THAT(log, HasSubstr(Error(kChild, "connect")));
  EXPECT_THAT(log, Not(HasSubstr("closesocket")));
  EXPECT_EQ(1, child_sockets.Count("Close"));
  EXPECT_EQ(1, child_sockets.Count("Stop"));
}

TEST_F(SendStubMessageTest, AFailedCloseAfterAFailedConnectIsLoggedToo) {
  child_sockets.Fail("Close");
  EXPECT_FALSE(Send("Connect"));
  EXPECT_THAT(log, HasSubstr(Error(kChild, "connect")));
  EXPECT_THAT(log, HasSubstr(Error(kChild, "closesocket")));
}

TEST_F(SendStubMessageTest, AFailedSendIsLoggedAndNoFailure) {
  Open();
  EXPECT_TRUE(Send("Send"));
  EXPECT_THAT(log, HasSubstr(Error(kChild, "send")));
  EXPECT_EQ(0, child_sockets.Count("ShutdownBoth"));
  EXPECT_EQ(1, child_sockets.Count("Close"));
  EXPECT_EQ(1, child_sockets.Count("Stop"));
  ASSERT_TRUE(sockets.WaitFor("Stop"));
}

}  // namespace
