#include "ORBCefClientRegistry.h"

#include <gtest/gtest.h>

#include "engine_doubles/NullFrame.h"

namespace {

using engine_doubles::NullFrame;

TEST(ORBCefClientRegistryTest, KeepsAClientUntilItIsRemoved) {
  ORBCefClientRegistry registry;
  const CefRefPtr<NullFrame> client = new NullFrame();
  registry.Add(7, client);
  EXPECT_FALSE(client->HasOneRef());
  registry.Remove(7);
  EXPECT_TRUE(client->HasOneRef());
}

TEST(ORBCefClientRegistryTest, TheFirstEntryOfABrowserStays) {
  ORBCefClientRegistry registry;
  const CefRefPtr<NullFrame> first = new NullFrame();
  const CefRefPtr<NullFrame> second = new NullFrame();
  registry.Add(7, first);
  registry.Add(7, second);
  EXPECT_FALSE(first->HasOneRef());
  EXPECT_TRUE(second->HasOneRef());
  EXPECT_EQ(registry.Size(), 1u);
}

TEST(ORBCefClientRegistryTest, RemovingAnUnknownBrowserDoesNothing) {
  ORBCefClientRegistry registry;
  registry.Add(1, new NullFrame());
  registry.Remove(2);
  EXPECT_EQ(registry.Size(), 1u);
}

}  // namespace
