// SPDX-License-Identifier: MIT
#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "runtime/MainQueue.hpp"
#include "runtime/SerialQueue.hpp"
#include "runtime/ThreadPool.hpp"
#include "support/RunMainQueue.hpp"

namespace vek {
namespace {

std::vector<int> upTo(int count) {
  std::vector<int> numbers;
  for (int i = 0; i < count; ++i) numbers.push_back(i);
  return numbers;
}

TEST(SerialQueue, RunsInOrderAndFinishesWhatWaitsWhenItGoes) {
  std::vector<int> ran;
  {
    SerialQueue queue("in-order");
    for (int i = 0; i < 1'000; ++i) queue.post([&ran, i] { ran.push_back(i); });
  }
  EXPECT_EQ(ran, upTo(1'000));
}

TEST(SerialQueue, SyncWaitsAndThrowsWhatTheWorkThrows) {
  SerialQueue queue("sync");
  bool wasCurrent = false;
  queue.sync([&] { wasCurrent = queue.isCurrent(); });
  EXPECT_TRUE(wasCurrent);
  EXPECT_FALSE(queue.isCurrent());
  EXPECT_THROW(queue.sync([] { throw std::runtime_error("there"); }), std::runtime_error);
}

TEST(ThreadPool, RunsWorkOnSeveralThreadsAtOnce) {
  std::atomic<int> waiting = 0;
  ThreadPool pool(2);
  // Each waits for the other.
  auto meet = [&] {
    ++waiting;
    waiting.notify_all();
    for (int seen = waiting; seen < 2; seen = waiting) waiting.wait(seen);
  };
  pool.post(meet);
  pool.post(meet);
  EXPECT_TRUE(test::runMainQueueUntil([&] { return waiting == 2; }));
}

TEST(MainQueue, RunsAtOnceOnTheMainThreadAndPostsFromOthers) {
  auto& queue = MainQueue::shared();
  ASSERT_TRUE(queue.isMainThread());
  std::vector<int> ran;
  queue.runOrPost([&] { ran.push_back(1); });
  EXPECT_EQ(ran.size(), 1U);
  std::jthread([&] {
    queue.runOrPost([&] { ran.push_back(2); });
    EXPECT_FALSE(queue.isMainThread());
  }).join();
  EXPECT_EQ(ran.size(), 1U);
  test::runMainQueue();
  EXPECT_THAT(ran, testing::ElementsAre(1, 2));
}

TEST(MainQueue, BoundLeavesTheRestAndOneWakeAnnouncesIt) {
  auto& queue = MainQueue::shared();
  int wakes = 0;
  queue.setWakeHandler([&] { ++wakes; });
  int ran = 0;
  for (int i = 0; i < 10; ++i) queue.post([&] { ++ran; });
  EXPECT_EQ(wakes, 1);
  EXPECT_EQ(queue.runPending(4), 4U);
  EXPECT_EQ(ran, 4);
  EXPECT_EQ(queue.runPending(), 6U);
  queue.post([] {});
  EXPECT_EQ(wakes, 2);
  queue.setWakeHandler(nullptr);
  test::runMainQueue();
}

TEST(MainQueue, RunUntilSleepsUntilWorkOrWakeComes) {
  auto& queue = MainQueue::shared();
  std::atomic<bool> done = false;
  std::jthread const other([&] {
    queue.post([] {});
    done = true;
    queue.wake();
  });
  queue.runUntil([&] { return done.load(); });
  EXPECT_TRUE(done);
}

}  // namespace
}  // namespace vek
