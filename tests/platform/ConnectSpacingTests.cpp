// SPDX-License-Identifier: MIT
#include "platform/ConnectSpacing.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;

TEST(ConnectSpacing, GrowsWhileConnectionsFailAndShrinksOnceOneHasLasted) {
  ConnectSpacing spacing;
  ConnectSpacing::Time now = ConnectSpacing::Time(1h);
  // Begins as early as it may, and gives how long that took.
  auto const begin = [&](std::string const& host) {
    auto const start = now;
    while (auto const pause = spacing.begin(host, now)) now += *pause;
    return now - start;
  };

  EXPECT_EQ(begin("a"), 0ms);
  EXPECT_EQ(begin("b"), 0ms) << "another host";
  EXPECT_EQ(begin("a"), 250ms);
  for (auto const pause : {500ms, 1000ms, 2000ms, 4000ms, 5000ms, 5000ms}) {
    spacing.failed("a");
    EXPECT_EQ(begin("a"), pause);
  }
  now += 5s;
  EXPECT_EQ(begin("a"), 0ms) << "the pause counts from the last beginning";
  spacing.proved("a");
  EXPECT_EQ(begin("a"), 250ms);
}

TEST(ConnectSpacing, OneThatOnlyWaitedTakesNoTurn) {
  ConnectSpacing spacing;
  ConnectSpacing::Time const now(1h);
  EXPECT_FALSE(spacing.begin("a", now));
  for (int i = 0; i < 10; ++i) EXPECT_EQ(spacing.begin("a", now), 250ms);
  EXPECT_FALSE(spacing.begin("a", now + 250ms));
}

}  // namespace
}  // namespace vek
