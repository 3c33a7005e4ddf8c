// SPDX-License-Identifier: MIT
#include "runtime/Dependency.hpp"

#include <array>
#include <atomic>
#include <barrier>
#include <string>
#include <thread>

#include "runtime/SerialQueue.hpp"
#include "runtime/SyncWait.hpp"

namespace vek {
namespace {

/// A client whose live value counts how often it was made.
struct Engine {
  int number = 0;
};
struct EngineKey {
  using Value = Engine;
  static inline std::atomic<int> made = 0;
  static Engine liveValue() {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return {++made};
  }
  static Engine previewValue() { return {-1}; }
  static Engine testValue() { return {-2}; }
};
constexpr DependencyKeyPath<EngineKey> engine;

/// A client that stands on another.
struct Car {
  Dependency<EngineKey> engine{vek::engine};
};
struct CarKey {
  using Value = Car;
  static Car liveValue() {
    // Reads another key while the lock of the cache is held.
    Car car;
    (void)car.engine.value();
    return car;
  }
};
constexpr DependencyKeyPath<CarKey> car;

/// Has a preview value but no test value.
struct PlainKey {
  using Value = int;
  static int liveValue() { return 1; }
  static int previewValue() { return 2; }
};
constexpr DependencyKeyPath<PlainKey> plain;

static_assert(DependencyKey<EngineKey>);
static_assert(!DependencyKey<Engine>, "A key needs a live value.");

int number() {
  return DependencyValues::current()[engine]->number;
}

auto settingEngine(int number) {
  return [number](DependencyValues& values) { values.set(engine, {number}); };
}

TEST(DependencyValues, LiveValueIsComputedOnceForReadersOnAllThreads) {
  constexpr int readers = 4;
  std::array<std::shared_ptr<Engine const>, readers> seen;
  {
    std::barrier start(readers);
    std::vector<std::jthread> threads;
    for (auto& place : seen) {
      threads.emplace_back([&] {
        start.arrive_and_wait();
        place = DependencyValues::current()[engine];
      });
    }
  }
  EXPECT_THAT(seen, testing::Each(seen.front()));
  EXPECT_EQ(EngineKey::made, 1);
}

TEST(DependencyValues, LiveValueThatReadsAnotherGetsTheSharedInstance) {
  auto const shared = DependencyValues::current()[car];
  EXPECT_EQ(shared->engine.value(), DependencyValues::current()[engine]);
}

TEST(DependencyValues, ContextChoosesTheValueAndFallsBackTowardsLive) {
  auto const numbersIn = [](DependencyContext context) {
    DependencyValues values;
    values.setContext(context);
    return std::pair(values[engine]->number, *values[plain]);
  };
  EXPECT_EQ(numbersIn(DependencyContext::preview), std::pair(-1, 2));
  EXPECT_EQ(numbersIn(DependencyContext::test), std::pair(-2, 2));
  EXPECT_EQ(numbersIn(DependencyContext::live), std::pair(number(), 1));
  EXPECT_EQ(DependencyValues().context(), DependencyContext::live);
}

TEST(DependencyValues, ValueOfAnUnexpectedTypeFallsThroughToTheCache) {
  DependencyValues values;
  values.setErased(typeid(EngineKey), std::string("not an engine"));
  EXPECT_EQ(values[engine], DependencyValues()[engine]);
}

TEST(DependencyValues, ScopesNestAndEnd) {
  auto const live = number();
  withDependencies(settingEngine(10), [&] {
    withDependencies(settingEngine(11), [] { EXPECT_EQ(number(), 11); });
    EXPECT_EQ(number(), 10);
    std::jthread([&] { EXPECT_EQ(number(), live); }).join();
  });
  EXPECT_EQ(number(), live);
}

TEST(Dependency, KeepsTheValuesOfTheScopeInWhichItWasMade) {
  auto const holder = withDependencies(settingEngine(20), [] { return Car(); });
  EXPECT_EQ(holder.engine->number, 20);
  withDependencies(settingEngine(21), [&] {
    EXPECT_EQ(holder.engine->number, 20) << "The values of its making win over those of the read.";
    EXPECT_EQ(Car().engine->number, 21);
  });
  Car const outside;
  withDependencies(settingEngine(22), [&] { EXPECT_EQ(outside.engine->number, 22); });
}

TEST(Dependency, EscapedScopeIsRestoredOnAnotherThreadAfterItHasEnded) {
  auto const continuation = withDependencies(settingEngine(30), [] {
    return withEscapedDependencies(
        [](DependencyValues::Continuation captured) { return captured; });
  });
  std::jthread([&] {
    EXPECT_EQ(continuation.yield([] { return number(); }), 30);
    EXPECT_NE(number(), 30);
  }).join();
}

TEST(Dependency, WorkStartedInAScopeKeepsItAcrossHopsAndAfterTheScope) {
  SerialQueue home("home");
  SerialQueue away("away");
  std::vector<int> seen;
  auto look = [](std::vector<int>& numbers) -> Task<> {
    numbers.push_back(number());
    co_return;
  };
  auto work = [&]() -> Task<> {
    co_await look(seen);
    co_await on(away, look(seen));
    co_await look(seen);
  };
  auto const handle = withDependencies(settingEngine(40), [&] { return spawn(home, work()); });
  syncWait(handle.wait());
  EXPECT_THAT(seen, testing::ElementsAre(40, 40, 40));
}

}  // namespace
}  // namespace vek
