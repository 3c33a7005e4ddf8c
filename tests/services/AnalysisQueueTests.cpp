// SPDX-License-Identifier: MIT
#include "services/backend/AnalysisQueue.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>

namespace vek::test {

namespace {

using namespace std::chrono_literals;
using services::AnalysisQueue;
using Answer = std::optional<std::string>;

/// A queue whose analyses end when the test says so.
class AnalysisQueueTests : public testing::Test {
 protected:
  std::future<Answer> ask(AnalysisQueue& queue, AnalysisQueue::Text const& text) {
    auto promise = std::make_shared<std::promise<Answer>>();
    queue.ask(text, [promise](Answer analysis) { promise->set_value(std::move(analysis)); });
    return promise->get_future();
  }
  void waitUntilBegun(std::size_t count) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return begun.size() >= count; });
  }
  /// Ends the one that was begun as number `index`.
  void end(std::size_t index, Answer const& analysis) {
    waitUntilBegun(index + 1);
    std::unique_lock lock(mutex);
    auto const done = begun[index].second;
    lock.unlock();
    done(analysis);
  }
  static AnalysisQueue::Text text(std::size_t size) { return {.size = size}; }

  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::pair<AnalysisQueue::Text, AnalysisQueue::Waiter>> begun;
  AnalysisQueue::Make const make = [this](AnalysisQueue::Text const& wanted,
                                          AnalysisQueue::Waiter done) {
    std::lock_guard lock(mutex);
    begun.emplace_back(wanted, std::move(done));
    changed.notify_all();
  };
};

TEST_F(AnalysisQueueTests, MakesEachOnceInOrderAndAFewAtATime) {
  AnalysisQueue queue(make, 1h);
  constexpr auto count = 3 * AnalysisQueue::atOnce;
  std::vector<std::future<Answer>> answers;
  for (std::size_t i = 0; i < 2 * count; ++i) answers.push_back(ask(queue, text(i % count)));
  for (std::size_t i = 0; i < count; ++i) {
    waitUntilBegun(std::min(i + AnalysisQueue::atOnce, count));
    EXPECT_EQ(begun.size(), std::min(i + AnalysisQueue::atOnce, count));
    EXPECT_EQ(begun[i].first, text(i));
    // One that fails is nobody else's.
    auto const analysis = i == 1 ? Answer() : Answer(std::to_string(i));
    end(i, analysis);
    EXPECT_EQ(answers[i].get(), analysis);
    EXPECT_EQ(answers[i + count].get(), analysis);
  }
}

TEST_F(AnalysisQueueTests, ABurstIsAnsweredWhenPatienceEndsAndIsMadeAllTheSame) {
  constexpr auto patience = 20ms;
  AnalysisQueue queue(make, patience);
  EXPECT_EQ(ask(queue, text(1)).get(), std::nullopt);
  // There is none left for later ones of the burst.
  for (std::size_t i = 2; i < 20; ++i) {
    auto answer = ask(queue, text(i));
    ASSERT_EQ(answer.wait_for(0s), std::future_status::ready);
    EXPECT_EQ(answer.get(), std::nullopt);
  }
  for (std::size_t i = 0; i < 19; ++i) end(i, "late");
  EXPECT_EQ(begun.size(), 19U);

  // The next burst is waited for again.
  auto const asked = AnalysisQueue::Clock::now();
  ask(queue, text(20)).get();
  EXPECT_GE(AnalysisQueue::Clock::now() - asked, patience);
}

TEST_F(AnalysisQueueTests, AStopAnswersAllAndBeginsNoMore) {
  AnalysisQueue queue(make, 1h);
  std::vector<std::future<Answer>> answers;
  for (std::size_t i = 0; i < 20; ++i) answers.push_back(ask(queue, text(i)));
  waitUntilBegun(AnalysisQueue::atOnce);
  queue.stop();
  for (auto& answer : answers) EXPECT_EQ(answer.get(), std::nullopt);
  end(0, "late");
  EXPECT_EQ(begun.size(), AnalysisQueue::atOnce);
  EXPECT_EQ(ask(queue, text(21)).get(), std::nullopt);
}

}  // namespace

}  // namespace vek::test
