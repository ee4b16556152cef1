#include <sched.h>

#include "Extensions/NSURL-QNExtensions.h"
#include "Network/QNNetworkUtilities.h"
#include "Support/Testing.h"

namespace {

TEST(QNNetworkUtilities, FlagsMeanReachableWithoutAConnectionToBeMade) {
  for (SCNetworkReachabilityFlags flags = 0; flags < 32; ++flags)
    EXPECT_EQ(QNNetworkUtilities::isReachable(flags), flags == 2 || flags == 3) << flags;
  EXPECT_TRUE(QNNetworkUtilities::isReachable(0x30002U));
}

TEST(QNNetworkUtilities, AsksForNamesAndRoutes) {
  const std::pair<TextView, bool> rows[] = {
      {u"http://127.0.0.1:1/x", true},
      {u"http://127%2E0.0.1", true},
      {u"http://\xFF4C\xFF4F\xFF43\xFF41\xFF4C\xFF48\xFF4F\xFF53\xFF54", true},  // in full width
      {u"http://\xD800", false},
      {u"http://name.invalid", false},
      {u"file:///etc", false},
      {u"relative", false},
      {u"http://a%00b", false},
  };
  for (const auto& [url, reachable] : rows)
    EXPECT_EQ(isReachable(NSURL::URLWithString(url)), reachable) << testing::PrintToString(url);
  EXPECT_FALSE(QNNetworkUtilities::isReachable(nullptr));
}

TEST(QNNetworkUtilities, WithoutANetworkNothingIsReachable) {
  if (unshare(CLONE_NEWUSER | CLONE_NEWNET) < 0) GTEST_SKIP() << "networks cannot be taken away here";
  EXPECT_EQ(networkReachabilityFlags(u"192.0.2.1"), 0U);
  EXPECT_FALSE(isReachable(NSURL::URLWithString(u"http://[2001:db8::1]")));
  EXPECT_FALSE(QNNetworkUtilities::isOnline());
}

}  // namespace
