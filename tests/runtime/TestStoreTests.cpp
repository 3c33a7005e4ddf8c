// SPDX-License-Identifier: MIT
#include "support/TestStore.hpp"

#include <gtest/gtest-spi.h>

#include "runtime/DateGenerator.hpp"
#include "runtime/Match.hpp"

namespace vek {
namespace {

/// A stopwatch that asks the clock in an effect and can be left running.
struct Stopwatch {
  struct State {
    int laps = 0;
    Date startedAt;
    std::string message;
    bool operator==(State const&) const = default;
  };
  struct Action {
    struct startClicked {
      bool operator==(startClicked const&) const = default;
    };
    struct started {
      Date at;
      bool operator==(started const&) const = default;
    };
    struct lapClicked {
      bool operator==(lapClicked const&) const = default;
    };
    struct waitClicked {
      bool operator==(waitClicked const&) const = default;
    };
    struct breakClicked {
      bool operator==(breakClicked const&) const = default;
    };
    struct failed {
      ErrorObject error;
      bool operator==(failed const&) const = default;
    };
    std::variant<startClicked, started, lapClicked, waitClicked, breakClicked, failed> value;
    bool operator==(Action const&) const = default;
  };

  Dependency<DateKey> clock{date};

  Effect<Action> reduce(State& state, Action const& action) const {
    return match(
        action,
        [&](Action::startClicked) {
          return Effect<Action>::run([this](Send<Action> send) -> Task<> {
            send({Action::started{clock->generate()}});
            co_return;
          });
        },
        [&](Action::started started) {
          state.startedAt = started.at;
          return Effect<Action>::send({Action::lapClicked{}});
        },
        [&](Action::lapClicked) {
          ++state.laps;
          return Effect<Action>::none();
        },
        [&](Action::waitClicked) {
          return Effect<Action>::run([](Send<Action>) -> Task<> {
            co_await callbackOperation<int>([](Completion<int> const&) {});
          });
        },
        [&](Action::breakClicked) {
          return Effect<Action>::run(
              [](Send<Action>) -> Task<> {
                throw std::runtime_error("out of order");
                co_return;
              },
              [](ErrorObject error, Send<Action> send) -> Task<> {
                send({Action::failed{std::move(error)}});
                co_return;
              });
        },
        [&](Action::failed const& failed) {
          state.message = failed.error.localizedDescription();
          return Effect<Action>::none();
        });
  }
};

using Action = Stopwatch::Action;
using State = Stopwatch::State;
auto const noon = Date(std::chrono::hours(12));

void stopTheClock(DependencyValues& values) {
  values.set(date, DateGenerator{[] { return noon; }});
}

TEST(TestStore, AccountsForActionsOfEffectsInTheSameDrainAndLater) {
  test::TestStore<Stopwatch> store({}, stopTheClock);
  store.send({Action::lapClicked{}}, [](State& state) { state.laps = 1; });
  store.send({Action::startClicked{}});
  store.receive({Action::started{noon}}, [](State& state) { state.startedAt = noon; });
  store.receive({Action::lapClicked{}}, [](State& state) { state.laps = 2; });
  store.finish();
}

TEST(TestStore, FailsAtTheLineThatIsWrong) {
  {
    test::TestStore<Stopwatch> store({}, stopTheClock);
    EXPECT_NONFATAL_FAILURE(store.send({Action::lapClicked{}}),
                            "\"lapClicked\" was sent and the state changed.");
  }
  {
    test::TestStore<Stopwatch> store({}, stopTheClock);
    store.send({Action::startClicked{}});
    EXPECT_NONFATAL_FAILURE(store.receive({Action::started{}}), "\"started\" has other values");
    EXPECT_NONFATAL_FAILURE(store.receive({Action::started{noon}}),
                            "Received \"lapClicked\" instead of \"started\"");
    EXPECT_NONFATAL_FAILURE(store.receive({Action::lapClicked{}}), "all have ended");
  }
}

TEST(TestStore, FailsWhenAnActionIsLeftAtTheEnd) {
  auto store = std::make_unique<test::TestStore<Stopwatch>>(State{}, stopTheClock);
  store->send({Action::startClicked{}});
  store->receive({Action::started{noon}}, [](State& state) { state.startedAt = noon; });
  EXPECT_NONFATAL_FAILURE(store.reset(), "\"lapClicked\" was not received at the end.");
}

TEST(TestStore, FailsWhenAnEffectIsLeftRunning) {
  auto store = std::make_unique<test::TestStore<Stopwatch>>(State{}, stopTheClock);
  store->waitAtMost(std::chrono::milliseconds(20));
  store->send({Action::waitClicked{}});
  EXPECT_NONFATAL_FAILURE(store.reset(),
                          "An effect that \"waitClicked\" started is still running.");
}

TEST(TestStore, ReceivesACaseWhoseValuesAreNotKnownBeforehand) {
  test::TestStore<Stopwatch> store({}, stopTheClock);
  store.send({Action::breakClicked{}});
  store.receive<Action::failed>([](State& state, Action::failed const& failed) {
    EXPECT_EQ(failed.error.localizedDescription(), "out of order");
    state.message = "out of order";
  });
}

TEST(TestStore, CancelledEffectIsNoLongerRunning) {
  test::TestStore<Stopwatch> store({}, stopTheClock);
  auto const waiting = store.send({Action::waitClicked{}});
  waiting.cancel();
  store.finish();
}

}  // namespace
}  // namespace vek
