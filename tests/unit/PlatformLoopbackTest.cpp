#include "platform/Loopback.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using platform::Loopback;

class PlatformLoopbackTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(0, loopback.Start()); }
  void TearDown() override { loopback.Stop(); }

  // A listening socket and its port.
  void Listen() {
    listener = loopback.Open();
    ASSERT_NE(Loopback::kNoSocket, listener);
    ASSERT_TRUE(loopback.Bind(listener));
    port = loopback.BoundPort(listener);
    ASSERT_GT(port, 0);
    ASSERT_TRUE(loopback.Listen(listener));
  }

  Loopback& loopback = Loopback::System();
  Loopback::Socket listener = Loopback::kNoSocket;
  int port = 0;
};

TEST_F(PlatformLoopbackTest, BytesGoFromOneEndToTheOther) {
  Listen();
  const Loopback::Socket client = loopback.Open();
  ASSERT_TRUE(loopback.Connect(client, port));
  const Loopback::Socket server = loopback.Accept(listener);
  ASSERT_NE(Loopback::kNoSocket, server);
  EXPECT_EQ(5, loopback.Send(client, "hello", 5));
  char buffer[32];
  ASSERT_EQ(5, loopback.Receive(server, buffer, sizeof(buffer)));
  EXPECT_EQ("hello", std::string(buffer, 5));
  EXPECT_TRUE(loopback.ShutdownBoth(client));
  EXPECT_EQ(0, loopback.Receive(server, buffer, sizeof(buffer)));
  EXPECT_TRUE(loopback.Close(client));
  EXPECT_TRUE(loopback.Close(server));
  EXPECT_TRUE(loopback.Close(listener));
}

TEST_F(PlatformLoopbackTest, APortWithoutAListenerIsRefusedWithAnError) {
  Listen();
  ASSERT_TRUE(loopback.Close(listener));
  const Loopback::Socket client = loopback.Open();
  EXPECT_FALSE(loopback.Connect(client, port));
  EXPECT_NE(0, loopback.LastError());
  EXPECT_TRUE(loopback.Close(client));
}

TEST_F(PlatformLoopbackTest, SendingToAPeerThatIsGoneFailsWithoutASignal) {
  Listen();
  const Loopback::Socket client = loopback.Open();
  ASSERT_TRUE(loopback.Connect(client, port));
  const Loopback::Socket server = loopback.Accept(listener);
  ASSERT_TRUE(loopback.ShutdownBoth(client));
  EXPECT_LT(loopback.Send(client, "x", 1), 0);
  EXPECT_TRUE(loopback.Close(client));
  EXPECT_TRUE(loopback.Close(server));
  EXPECT_TRUE(loopback.Close(listener));
}

TEST_F(PlatformLoopbackTest, NoSocketFailsEverywhere) {
  char byte = 0;
  EXPECT_FALSE(loopback.Bind(Loopback::kNoSocket));
  EXPECT_EQ(-1, loopback.BoundPort(Loopback::kNoSocket));
  EXPECT_FALSE(loopback.Listen(Loopback::kNoSocket));
  EXPECT_EQ(Loopback::kNoSocket, loopback.Accept(Loopback::kNoSocket));
  EXPECT_FALSE(loopback.Connect(Loopback::kNoSocket, 1));
  EXPECT_LT(loopback.Receive(Loopback::kNoSocket, &byte, 1), 0);
  EXPECT_LT(loopback.Send(Loopback::kNoSocket, &byte, 1), 0);
  EXPECT_FALSE(loopback.ShutdownBoth(Loopback::kNoSocket));
  EXPECT_FALSE(loopback.Close(Loopback::kNoSocket));
}

}  // namespace
