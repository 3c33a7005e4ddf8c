// SPDX-License-Identifier: MIT
#include "runtime/Task.hpp"

#include <array>
#include <atomic>
#include <stdexcept>
#include <thread>

#include "runtime/CallbackOperation.hpp"
#include "runtime/SerialQueue.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/ThreadPool.hpp"
#include "runtime/WhenAll.hpp"
#include "support/Reports.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;

struct NameKey {
  using Value = std::string;
  static std::string liveValue() { return "nobody"; }
};
constexpr DependencyKeyPath<NameKey> nameKey;

DependencyValues named(std::string name) {
  DependencyValues values;
  values.set(nameKey, std::move(name));
  return values;
}

std::string currentName() {
  return *DependencyValues::current()[nameKey];
}

Task<int> give(int value) {
  co_return value;
}

Task<int> failing(std::string what) {
  throw std::runtime_error(what);
  co_return 0;
}

/// Ends with a cancellation and in no other way.
Task<> forever() {
  co_await callbackOperation<bool>([](Completion<bool> const&) {});
}

template <class T>
std::string errorOf(Task<T> task) {
  try {
    syncWait(std::move(task));
  } catch (std::exception const& error) {
    return error.what();
  }
  return "";
}

std::string const cancelled = CancellationError().what();

Task<std::int64_t> sumOf(int count) {
  std::int64_t sum = 0;
  for (int i = 0; i < count; ++i) sum += co_await give(1);
  co_return sum;
}

Task<int> depthOf(int depth) {
  if (depth == 0) co_return 0;
  co_return 1 + co_await depthOf(depth - 1);
}

TEST(Task, ManyAwaitsAndDeepRecursionUseNoStack) {
  EXPECT_EQ(syncWait(sumOf(2'000'000)), 2'000'000);
  EXPECT_EQ(syncWait(depthOf(200'000)), 200'000);
}

TEST(Task, ErrorPassesThroughEveryAwaiterAndAttemptHoldsIt) {
  auto outer = []() -> Task<int> { co_return 1 + co_await failing("broken"); };
  EXPECT_EQ(errorOf(outer()), "broken");

  auto const failed = syncWait(attempt(outer()));
  ASSERT_FALSE(failed);
  EXPECT_THROW((void)failed.value(), std::runtime_error);
  EXPECT_EQ(syncWait(attempt(give(3))).value(), 3);
}

TEST(Task, MovesItsValueOut) {
  auto make = []() -> Task<std::unique_ptr<int>> { co_return std::make_unique<int>(5); };
  EXPECT_EQ(*syncWait(make()), 5);
}

TEST(Task, HopRunsThereAndComesBack) {
  SerialQueue queue("hop");
  auto hop = [&]() -> Task<bool> {
    auto const home = std::this_thread::get_id();
    auto there = [](SerialQueue& on) -> Task<bool> { co_return on.isCurrent(); };
    bool const wasThere = co_await on(queue, there(queue));
    auto fails = []() -> Task<> {
      throw std::runtime_error("over there");
      co_return;
    };
    auto const failed = co_await attempt(on(queue, fails()));
    co_return wasThere && !failed && std::this_thread::get_id() == home;
  };
  EXPECT_TRUE(syncWait(hop()));
}

TEST(Task, ValuesFollowTheWorkAcrossThreadsAndStayInsideIt) {
  SerialQueue queue("values");
  auto work = [&]() -> Task<std::string> {
    auto seen = []() -> Task<std::string> { co_return currentName(); };
    auto onQueue = [](SerialQueue& there, Task<std::string> task) -> Task<std::string> {
      co_return co_await on(there, std::move(task));
    };
    auto text = co_await seen();
    text += " " + co_await withDependencies(named("inner"), onQueue(queue, seen()));
    text += " " + co_await on(queue, seen());
    co_return text;
  };
  EXPECT_EQ(syncWait(withDependencies(named("outer"), work())), "outer inner outer");
  EXPECT_EQ(currentName(), "nobody");
  std::string onTheQueueItself;
  queue.sync([&] { onTheQueueItself = currentName(); });
  EXPECT_EQ(onTheQueueItself, "nobody");
}

TEST(Task, StopReachesTheLeafFromEitherToken) {
  auto const stopBy = [](bool inner) {
    std::stop_source outerSource;
    std::stop_source innerSource;
    std::thread stopper([&] {
      std::this_thread::sleep_for(1ms);
      (inner ? innerSource : outerSource).request_stop();
    });
    auto task = withStop(outerSource.get_token(), withStop(innerSource.get_token(), forever()));
    auto const error = errorOf(std::move(task));
    stopper.join();
    return error;
  };
  EXPECT_EQ(stopBy(false), cancelled);
  EXPECT_EQ(stopBy(true), cancelled);
}

TEST(CallbackOperation, FirstAnswerWins) {
  std::array<bool, 3> won{};
  bool stopped = false;
  auto answered = [&]() -> Task<int> {
    co_return co_await callbackOperation<int>(
        [&](Completion<int> completion) {
          won = {completion.resolve(1), completion.resolve(2),
                 completion.reject(std::make_exception_ptr(std::runtime_error("late")))};
        },
        [&] { stopped = true; });
  };
  std::stop_source source;
  source.request_stop();
  EXPECT_EQ(syncWait(withStop(source.get_token(), answered())), 1);
  EXPECT_THAT(won, testing::ElementsAre(true, false, false));
  EXPECT_FALSE(stopped);
}

TEST(CallbackOperation, StoppedOneTellsItsStarterAndIgnoresLateAnswers) {
  bool stopped = false;
  std::optional<Completion<int>> late;
  auto waiting = [&]() -> Task<int> {
    co_return co_await callbackOperation<int>(
        [&](Completion<int> completion) { late = std::move(completion); }, [&] { stopped = true; });
  };
  std::stop_source source;
  source.request_stop();
  EXPECT_EQ(errorOf(withStop(source.get_token(), waiting())), cancelled);
  EXPECT_TRUE(stopped);
  EXPECT_FALSE(late->resolve(1));
}

TEST(CallbackOperation, RaceOfAnswerAndStopHasExactlyOneWinner) {
  SerialQueue answering("answering");
  SerialQueue stopping("stopping");
  int answers = 0;
  for (int round = 0; round < 2'000; ++round) {
    std::stop_source source;
    std::atomic<int> winners = 0;
    auto raced = [&]() -> Task<int> {
      co_return co_await callbackOperation<int>(
          [&](Completion<int> completion) {
            answering.post([&winners, completion] {
              if (completion.resolve(7)) ++winners;
            });
            stopping.post([&source] { source.request_stop(); });
          },
          [&] { ++winners; });
    };
    auto const outcome = syncWait(attempt(withStop(source.get_token(), raced())));
    if (outcome) {
      EXPECT_EQ(outcome.value(), 7);
      ++answers;
    }
    answering.sync([] {});
    stopping.sync([] {});
    ASSERT_EQ(winners, 1);
  }
  RecordProperty("answers", answers);
}

TEST(TaskHandle, WaitEndsWithTheWorkAlsoWhenItEndedBefore) {
  SerialQueue queue("work");
  bool done = false;
  auto work = [](bool& flag) -> Task<> {
    flag = true;
    co_return;
  };
  auto const handle = spawn(queue, work(done));
  syncWait(handle.wait());
  EXPECT_TRUE(done && handle.isDone());
  syncWait(handle.wait());
  syncWait(TaskHandle().wait());
}

TEST(TaskHandle, CancelEndsQuietlyAndOtherErrorsAreReported) {
  test::Reports reports;
  SerialQueue queue("work");
  auto const waiting = spawn(queue, forever());
  waiting.cancel();
  syncWait(waiting.wait());
  EXPECT_TRUE(reports.texts().empty());

  auto fails = []() -> Task<> {
    throw std::runtime_error("lost");
    co_return;
  };
  syncWait(spawn(queue, fails()).wait());
  EXPECT_THAT(reports.texts(), testing::ElementsAre(testing::HasSubstr("lost")));
}

TEST(TaskHandle, SpawnedWorkHasItsOwnStopTokenButTheValuesOfItsStart) {
  SerialQueue queue("work");
  std::string seen;
  bool stopped = true;
  auto inner = [&]() -> Task<> {
    seen = currentName();
    stopped = Environment::isCancelled();
    co_return;
  };
  auto outer = [&]() -> Task<> { co_await spawn(queue, inner()).wait(); };
  std::stop_source source;
  source.request_stop();
  syncWait(withDependencies(named("starter"), withStop(source.get_token(), outer())));
  EXPECT_EQ(seen, "starter");
  EXPECT_FALSE(stopped);
}

/// What the work holds is let go in the environment of the work, before anybody hears of its end.
TEST(TaskHandle, WorkIsReleasedBeforeItsEndIsTold) {
  struct Witness {
    std::string* seen;
    ~Witness() { *seen = currentName(); }
  };
  SerialQueue queue("work");
  std::string seen;
  auto work = [](std::shared_ptr<Witness>) -> Task<> { co_return; };
  auto const handle = spawn(queue, work(std::make_shared<Witness>(&seen)), named("worker"));
  syncWait(handle.wait());
  EXPECT_EQ(seen, "worker");
}

TEST(WhenAll, GivesValuesInOrderWhateverEndsFirst) {
  auto& pool = ThreadPool::shared();
  std::vector<Task<int>> tasks;
  for (int i = 0; i < 50; ++i) tasks.push_back(on(pool, give(i)));
  auto const values = syncWait(whenAll(std::move(tasks)));
  ASSERT_EQ(values.size(), 50U);
  for (int i = 0; i < 50; ++i) EXPECT_EQ(values[static_cast<std::size_t>(i)], i);

  auto text = []() -> Task<std::string> { co_return "two"; };
  EXPECT_EQ(syncWait(whenAll(give(1), text())), std::pair(1, std::string("two")));
  EXPECT_TRUE(syncWait(whenAll(std::vector<Task<int>>())).empty());
}

TEST(WhenAll, FirstErrorStopsTheOthersAndWaitsForThem) {
  bool ended = false;
  auto slow = [&]() -> Task<int> {
    auto const outcome = co_await attempt(forever());
    ended = !outcome;
    co_return 0;
  };
  std::vector<Task<int>> tasks;
  tasks.push_back(slow());
  tasks.push_back(on(ThreadPool::shared(), failing("first")));
  EXPECT_EQ(errorOf(whenAll(std::move(tasks))), "first");
  EXPECT_TRUE(ended);
}

TEST(WhenAll, RealErrorIsNotHiddenByACancellationThatCameBeforeIt) {
  auto cancelsItself = []() -> Task<int> {
    throw CancellationError();
    co_return 0;
  };
  auto failsOnStop = []() -> Task<int> {
    (void)co_await attempt(forever());
    throw std::runtime_error("real");
  };
  EXPECT_EQ(errorOf(whenAll(cancelsItself(), failsOnStop())), "real");
}

TEST(WhenAll, StopOfTheAwaiterReachesEveryTask) {
  std::stop_source source;
  source.request_stop();
  std::vector<Task<>> tasks;
  tasks.push_back(forever());
  tasks.push_back(forever());
  EXPECT_EQ(errorOf(withStop(source.get_token(), whenAll(std::move(tasks)))), cancelled);
}

}  // namespace
}  // namespace vek
