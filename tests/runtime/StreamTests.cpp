// SPDX-License-Identifier: MIT
#include "runtime/Stream.hpp"

#include <array>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "runtime/Subject.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {
namespace {

std::exception_ptr error(char const* what) {
  return std::make_exception_ptr(std::runtime_error(what));
}

/// All items up to the end, and the error that ended it, if any.
template <class T>
Task<std::pair<std::vector<T>, std::string>> drain(Stream<T> stream) {
  std::pair<std::vector<T>, std::string> result;
  try {
    while (auto item = co_await stream.next()) result.first.push_back(std::move(*item));
  } catch (std::exception const& failure) {
    result.second = failure.what();
  }
  co_return result;
}

TEST(Stream, GivesBufferedItemsFirstAndThenTheEndOrTheError) {
  auto [ending, endingSide] = Stream<int>::makeStream();
  endingSide.yield(1);
  endingSide.yield(2);
  endingSide.finish();
  endingSide.yield(3);
  endingSide.finish(error("late"));
  EXPECT_EQ(syncWait(drain(std::move(ending))), std::pair(std::vector{1, 2}, std::string()));

  auto [failing, failingSide] = Stream<int>::makeStream();
  failingSide.yield(1);
  failingSide.finish(error("broken"));
  EXPECT_EQ(syncWait(drain(failing)), std::pair(std::vector{1}, std::string("broken")));
  EXPECT_EQ(syncWait(failing.next()), std::nullopt);
}

TEST(Stream, ManyProducersLoseNothingAndKeepTheirOwnOrder) {
  constexpr int perProducer = 5'000;
  auto [stream, continuation] = Stream<std::unique_ptr<int>>::makeStream();
  auto produce = [side = continuation](int from) {
    for (int i = 0; i < perProducer; ++i) side.yield(std::make_unique<int>(from + i));
  };
  std::thread both([&] {
    std::jthread first(produce, 0);
    std::jthread second(produce, perProducer);
    first.join();
    second.join();
    continuation.finish();
  });
  auto const [items, failure] = syncWait(drain(std::move(stream)));
  both.join();
  EXPECT_EQ(items.size(), 2U * perProducer);
  std::array<int, 2> last{-1, -1};
  for (auto const& item : items) {
    auto& previous = last.at(*item < perProducer ? 0 : 1);
    ASSERT_LT(previous, *item);
    previous = *item;
  }
}

TEST(Stream, CancelledNextLosesNoItem) {
  auto& pool = ThreadPool::shared();
  int received = 0;
  for (int round = 0; round < 1'000; ++round) {
    auto [stream, continuation] = Stream<int>::makeStream();
    std::stop_source source;
    pool.post([side = continuation] { side.yield(7); });
    pool.post([source]() mutable { source.request_stop(); });
    auto const first = syncWait(attempt(withStop(source.get_token(), stream.next())));
    if (first) ++received;
    auto const item = first ? first.value() : syncWait(stream.next());
    ASSERT_EQ(item, 7);
  }
  RecordProperty("receivedBeforeTheStop", received);
}

TEST(Stream, ItemsThatNobodyCanReceiveAreReleased) {
  auto item = std::make_shared<int>(1);
  auto ends = std::make_optional(Stream<std::shared_ptr<int>>::makeStream());
  auto const continuation = ends->continuation;
  continuation.yield(item);
  EXPECT_EQ(item.use_count(), 2);
  ends.reset();
  EXPECT_TRUE(continuation.isAbandoned());
  continuation.yield(item);
  EXPECT_EQ(item.use_count(), 1);
}

TEST(Subject, SendsToAllWhoIterateAndKeepsOnlyItsEnd) {
  Subject<int> subject;
  auto const early = subject.values();
  auto const late = subject.values();
  auto next = [](Stream<int> const& stream) {
    std::stop_source source;
    source.request_stop();
    return syncWait(attempt(withStop(source.get_token(), stream.next())));
  };
  subject.send(1);
  EXPECT_FALSE(next(early));  // Iterates from here on.
  subject.send(2);
  EXPECT_FALSE(next(late));
  subject.send(3);
  subject.sendCompletion(error("over"));
  subject.sendCompletion();
  subject.send(4);
  using Drained = std::pair<std::vector<int>, std::string>;
  EXPECT_EQ(syncWait(drain(early)), Drained({2, 3}, "over"));
  EXPECT_EQ(syncWait(drain(late)), Drained({3}, "over"));
  EXPECT_EQ(syncWait(drain(subject.values())), Drained({}, "over"));
}

}  // namespace
}  // namespace vek
