// SPDX-License-Identifier: MIT
#include "runtime/Effect.hpp"

#include <stdexcept>
#include <thread>

#include "runtime/SyncWait.hpp"
#include "runtime/ThreadPool.hpp"
#include "support/Reports.hpp"
#include "support/ScriptedStore.hpp"

namespace vek {
namespace {

using test::isDone;
using test::Kind;
using test::Letters;
using test::Probe;
using test::runMainQueue;
using test::scripted;
using Action = test::Scripted::Action;

constexpr std::array kinds{Kind::publisher, Kind::run, Kind::none};

/// None with anything is the other, run with run stays a run, everything else is a publisher.
std::size_t kindOfBoth(Kind first, Kind second) {
  if (first == Kind::none) return static_cast<std::size_t>(second);
  if (second == Kind::none || first == second) return static_cast<std::size_t>(first);
  return static_cast<std::size_t>(Kind::publisher);
}

struct Pair {
  Probe first;
  Probe second;
  std::shared_ptr<test::ScriptedStore> store;
  StoreTask task;

  template <class Combine>
  Pair(Kind one, Kind two, Combine combine) : first(one), second(two) {
    store = scripted({{'s', [this, combine] {
                         auto both = combine(first.effect(), second.effect());
                         EXPECT_EQ(both.operation.index(), kindOfBoth(first.kind, second.kind));
                         return both;
                       }}});
    task = store->send('s');
    runMainQueue();
  }

  static void emitAndEnd(Probe& probe, char letter) {
    if (probe.kind == Kind::none) return;
    probe.emit(letter);
    probe.end();
    runMainQueue();
  }

  void expectOver() const {
    EXPECT_TRUE(isDone(task));
    EXPECT_EQ(store->liveEffectCount(), 0U);
  }
};

TEST(Effect, NinePairsMerged) {
  for (auto const one : kinds) {
    for (auto const two : kinds) {
      Pair pair(one, two, Letters::merge);
      EXPECT_EQ(pair.first.started, one != Kind::none);
      EXPECT_EQ(pair.second.started, two != Kind::none);
      Pair::emitAndEnd(pair.second, '2');
      Pair::emitAndEnd(pair.first, '1');
      EXPECT_EQ(pair.store->state().text,
                std::string("s") + (two == Kind::none ? "" : "2") + (one == Kind::none ? "" : "1"));
      pair.expectOver();

      Pair stopped(one, two, Letters::merge);
      stopped.task.cancel();
      stopped.expectOver();
      EXPECT_EQ(stopped.first.stopped, one != Kind::none);
      EXPECT_EQ(stopped.second.stopped, two != Kind::none);
    }
  }
}

TEST(Effect, NinePairsInSequence) {
  for (auto const one : kinds) {
    for (auto const two : kinds) {
      Pair pair(one, two, Letters::concatenate);
      EXPECT_EQ(pair.second.started, one == Kind::none && two != Kind::none);
      Pair::emitAndEnd(pair.first, '1');
      EXPECT_EQ(pair.second.started, two != Kind::none);
      Pair::emitAndEnd(pair.second, '2');
      EXPECT_EQ(pair.store->state().text,
                std::string("s") + (one == Kind::none ? "" : "1") + (two == Kind::none ? "" : "2"));
      pair.expectOver();

      Pair stopped(one, two, Letters::concatenate);
      stopped.task.cancel();
      stopped.expectOver();
      EXPECT_EQ(stopped.first.stopped, one != Kind::none);
      EXPECT_EQ(stopped.second.started, one == Kind::none && two != Kind::none);
    }
  }
}

TEST(Effect, CancelStopsWhatRunsUnderItsIdOnly) {
  for (auto const kind : {Kind::publisher, Kind::run}) {
    Probe mine(kind);
    Probe other(kind);
    auto const store = scripted({
        {'m', [&] { return mine.effect().cancellable(std::string("mine")); }},
        {'o', [&] { return other.effect().cancellable(std::string("other")); }},
        {'c', [&] { return Letters::cancel(std::string("mine")); }},
    });
    store->send('c');  // Nothing runs under it: nothing happens.
    auto const task = store->send('m');
    auto const otherTask = store->send('o');
    runMainQueue();
    store->send('c');
    EXPECT_TRUE(mine.stopped);
    if (kind == Kind::publisher) mine.emit('!');
    EXPECT_TRUE(isDone(task));
    EXPECT_TRUE(other.isRunning());
    EXPECT_EQ(store->state().text, "cmoc");
    other.emit('+');
    other.end();
    EXPECT_TRUE(isDone(otherTask));
    EXPECT_EQ(store->state().text, "cmoc+");
    EXPECT_EQ(store->liveEffectCount(), 0U);
    EXPECT_TRUE(CancellablesCollection::shared().isEmpty());
  }
}

TEST(Effect, CancelInFlightStopsTheEarlierOneUnderTheSameId) {
  for (auto const kind : {Kind::publisher, Kind::run}) {
    for (auto const inFlight : {CancelInFlight::no, CancelInFlight::yes}) {
      Probe early(kind);
      Probe late(kind);
      auto const store = scripted({
          {'e', [&] { return early.effect().cancellable(1, inFlight); }},
          {'l', [&] { return late.effect().cancellable(1, inFlight); }},
          {'c', [&] { return Letters::cancel(1); }},
      });
      store->send('e');
      runMainQueue();
      store->send('l');
      runMainQueue();
      EXPECT_EQ(early.stopped, inFlight == CancelInFlight::yes);
      EXPECT_TRUE(late.isRunning());
      store->send('c');
      runMainQueue();
      EXPECT_TRUE(early.stopped && late.stopped);
      EXPECT_TRUE(CancellablesCollection::shared().isEmpty());
    }
  }
}

TEST(Effect, CancelTakesEffectInItsOwnDrainBeforeWhatWasSentAfterIt) {
  Probe probe(Kind::publisher);
  auto const store = scripted({
      {'p', [&] { return probe.effect().cancellable(1); }},
      {'c', [&] { return Letters::merge(Letters::cancel(1), Letters::send('d')); }},
      {'d',
       [&] {
         EXPECT_TRUE(probe.stopped);
         return Letters::none();
       }},
  });
  store->send('p');
  store->send('c');
  EXPECT_EQ(store->state().text, "pcd");
}

TEST(Effect, MapTransformsEveryKind) {
  auto const nextLetter = [](Action const& action) {
    return Action(static_cast<char>(action.which() + 1));
  };
  for (auto const kind : {Kind::publisher, Kind::run}) {
    Probe probe(kind);
    auto const store = scripted({{'s', [&] { return probe.effect().map<Action>(nextLetter); }}});
    store->send('s');
    runMainQueue();
    probe.emit('a');
    EXPECT_EQ(store->state().text, "sb");
    probe.end();
    runMainQueue();
  }
  EXPECT_EQ(Letters::none().map<Action>(nextLetter).operation.index(), 2U);
  auto const store = scripted({{'s', [&] { return Letters::send('a').map<Action>(nextLetter); }}});
  store->send('s');
  EXPECT_EQ(store->state().text, "sb");
}

Letters failing(RunEffect<Action>::Catch handler = nullptr) {
  return Letters::run(
      [](Send<Action> send) -> Task<> {
        send('r');
        throw std::runtime_error("no connection");
      },
      std::move(handler));
}

TEST(EffectRun, ErrorGoesToTheHandlerWithTheSameSend) {
  test::Reports const reports;
  auto const store =
      scripted({{'s', [] {
                   return failing([](ErrorObject error, Send<Action> send) -> Task<> {
                     EXPECT_EQ(error.localizedDescription(), "no connection");
                     send('h');
                     co_return;
                   });
                 }}});
  EXPECT_TRUE(isDone(store->send('s')));
  EXPECT_EQ(store->state().text, "srh");
  EXPECT_THAT(reports.texts(), testing::IsEmpty());
}

TEST(EffectRun, ErrorWithoutHandlerIsReportedInTheseWords) {
  test::Reports const reports;
  auto const store = scripted({{'s', [] { return failing(); }}});
  EXPECT_TRUE(isDone(store->send('s')));
  ASSERT_EQ(reports.texts().size(), 1U);
  EXPECT_THAT(
      reports.texts()[0],
      testing::MatchesRegex(
          "An \"Effect.run\" returned from \"runtime/EffectTests.cpp:[0-9]+\" threw an unhandled "
          "error. …\n\n    no connection\n\nAll non-cancellation errors must be explicitly handled "
          "via the \"catch\" parameter on \"Effect.run\", or via a \"do\" block."));
}

TEST(EffectRun, CancellationErrorEndsItQuietly) {
  test::Reports const reports;
  bool handled = false;
  auto const store = scripted({{'s', [&] {
                                  return Letters::run(
                                      [](Send<Action>) -> Task<> {
                                        throw CancellationError();
                                        co_return;
                                      },
                                      [&](ErrorObject, Send<Action>) -> Task<> {
                                        handled = true;
                                        co_return;
                                      });
                                }}});
  EXPECT_TRUE(isDone(store->send('s')));
  EXPECT_FALSE(handled);
  EXPECT_TRUE(reports.texts().empty());
}

TEST(EffectRun, SendAfterItsEndIsReportedAndStillDelivered) {
  test::Reports const reports;
  Probe probe(Kind::run);
  auto const store = scripted({{'s', [&] { return probe.effect(); }}});
  store->send('s');
  runMainQueue();
  probe.end();
  runMainQueue();
  probe.emit('l');
  EXPECT_EQ(store->state().text, "sl");
  EXPECT_THAT(
      reports.texts(),
      testing::ElementsAre(
          "An action was sent from a completed effect:\n\n  Action:\n    letter\n\n  Effect "
          "returned from:\n    letter\n\nAvoid sending actions using the 'send' argument from "
          "'Effect.run' after the effect has completed. This can happen if you escape the 'send' "
          "argument in an unstructured context.\n\nTo fix this, make sure that your 'run' closure "
          "does not return until you're done calling 'send'."));
}

/// The effect sends from another thread and is cancelled while that is on its way to the store.
TEST(EffectRun, SendOfACancelledTaskDeliversAndReportsNothing) {
  test::Reports const reports;
  auto const store = scripted({{'s', [] {
                                  return Letters::run([](Send<Action> send) -> Task<> {
                                    auto there = [](Send<Action> sending) -> Task<> {
                                      sending('x');
                                      co_return;
                                    };
                                    co_await on(ThreadPool::shared(), there(send));
                                    send('y');
                                  });
                                }}});
  auto const task = store->send('s');
  ASSERT_EQ(MainQueue::shared().runPending(1), 1U);
  task.cancel();
  EXPECT_TRUE(test::runMainQueueUntil([&] { return task.tasks()->isDone(); }));
  EXPECT_EQ(store->state().text, "s");
  EXPECT_TRUE(reports.texts().empty());
}

TEST(EffectRun, StartsLaterOnTheMainThreadAndSendsFromElsewhereInOrder) {
  std::thread::id startedOn;
  auto const store = scripted({{'0', [&] {
                                  return Letters::run([&](Send<Action> send) -> Task<> {
                                    startedOn = std::this_thread::get_id();
                                    auto there = [](Send<Action> sending) -> Task<> {
                                      for (char letter = 'a'; letter <= 'z'; ++letter) {
                                        sending(letter);
                                      }
                                      co_return;
                                    };
                                    co_await on(ThreadPool::shared(), there(send));
                                    send('!');
                                  });
                                }}});
  auto const task = store->send('0');
  EXPECT_EQ(startedOn, std::thread::id());
  EXPECT_TRUE(test::runMainQueueUntil([&] { return task.tasks()->isDone(); }));
  EXPECT_EQ(startedOn, std::this_thread::get_id());
  EXPECT_EQ(store->state().text, "0abcdefghijklmnopqrstuvwxyz!");
}

struct PlaceKey {
  using Value = std::string;
  static std::string liveValue() { return "nowhere"; }
};
constexpr DependencyKeyPath<PlaceKey> placeKey;

/// Values set for a send hold in the work of its effects and in what that work sends, whatever
/// thread it sends from, and not in the sends of others.
TEST(EffectRun, ValuesOfTheSendHoldForItsEffectsAndTheirActions) {
  std::vector<std::string> places;
  auto const note = [&] {
    places.push_back(*DependencyValues::current()[placeKey]);
    return Letters::none();
  };
  auto const store = scripted({{'s',
                                [&] {
                                  return Letters::run([&](Send<Action> send) -> Task<> {
                                    note();
                                    send('n');
                                    auto there = [](Send<Action> sending) -> Task<> {
                                      sending('n');
                                      co_return;
                                    };
                                    co_await on(ThreadPool::shared(), there(send));
                                  });
                                }},
                               {'n', note}});
  auto const task = withDependencies([](DependencyValues& values) { values.set(placeKey, "here"); },
                                     [&] { return store->send('s'); });
  EXPECT_TRUE(test::runMainQueueUntil([&] { return task.tasks()->isDone(); }));
  store->send('n');
  EXPECT_THAT(places, testing::ElementsAre("here", "here", "here", "nowhere"));
}

TEST(EffectPublisher, ValuesFromAnotherThreadComeOnTheMainThreadInTheOrderOfTheirEmission) {
  Probe probe(Kind::publisher);
  auto const store = scripted({{'0', [&] { return probe.effect(); }}});
  store->send('0');
  std::jthread([&] {
    for (char letter = 'a'; letter <= 'y'; ++letter) probe.emit(letter);
  }).join();
  probe.emit('z');  // From here, behind those that are still under way.
  probe.end();
  EXPECT_EQ(store->state().text, "0");
  runMainQueue();
  EXPECT_EQ(store->state().text, "0abcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(store->liveEffectCount(), 0U);
}

TEST(EffectPublisher, ValuesUnderWayAreDroppedWhenItIsCancelled) {
  Probe probe(Kind::publisher);
  auto const store = scripted({
      {'s', [&] { return probe.effect().cancellable(1); }},
      {'c', [] { return Letters::cancel(1); }},
  });
  auto const task = store->send('s');
  std::jthread([&] { probe.emit('!'); }).join();
  store->send('c');
  EXPECT_TRUE(isDone(task));
  EXPECT_TRUE(probe.stopped);
  EXPECT_EQ(store->state().text, "sc");
}

TEST(EffectPublisher, OneThatEndsWhileSubscribedToLeavesNothingBehind) {
  auto const store = scripted({{'s', [] {
                                  return Letters::publisher(Publisher<Action>([](auto subscriber) {
                                    subscriber.onValue('a');
                                    subscriber.onValue('b');
                                    subscriber.onCompletion();
                                    return Subscription();
                                  }));
                                }}});
  auto const task = store->send('s');
  EXPECT_EQ(store->liveEffectCount(), 0U);
  EXPECT_TRUE(!task || task.tasks()->isDone());
  EXPECT_EQ(store->state().text, "sab");
}

}  // namespace
}  // namespace vek
