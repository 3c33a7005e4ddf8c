// SPDX-License-Identifier: MIT
#include "runtime/Store.hpp"

#include "runtime/IdentifiedArray.hpp"
#include "runtime/Match.hpp"
#include "runtime/SyncWait.hpp"
#include "support/ScriptedStore.hpp"

namespace vek {
namespace {

using test::isDone;
using test::Kind;
using test::Letters;
using test::Probe;
using test::runMainQueue;
using test::scripted;

TEST(RootStore, ReducesInTheOrderOfTheBuffer) {
  auto const store = scripted({
      {'a', [] { return Letters::merge(Letters::send('b'), Letters::send('c')); }},
      {'b', [] { return Letters::send('d'); }},
      {'c', [] { return Letters::send('e'); }},
  });
  store->send('a');
  EXPECT_EQ(store->state().text, "abcde");
}

TEST(RootStore, StateIsWrittenOnceADrain) {
  std::vector<std::string> seen;
  auto const store = scripted({{'a', [] { return Letters::send('b'); }}});
  auto const subscription = store->didSet.subscribe([&] { seen.push_back(store->state().text); });
  store->send('a');
  store->send('c');
  EXPECT_THAT(seen, testing::ElementsAre("ab", "abc"));
}

TEST(RootStore, ActionsOfDidSetSubscribersStartOneMoreDrainInTheirOrder) {
  std::vector<std::string> seen;
  auto const store = scripted({});
  bool sent = false;
  auto const first = store->didSet.subscribe([&] {
    seen.push_back(store->state().text);
    if (std::exchange(sent, true)) return;
    EXPECT_FALSE(store->send('1'));
    store->send('2');
    EXPECT_EQ(store->state().text, "a") << "They wait for the drain to end.";
  });
  bool sentToo = false;
  auto const second = store->didSet.subscribe([&] {
    if (!std::exchange(sentToo, true)) store->send('3');
  });
  store->send('a');
  EXPECT_EQ(store->state().text, "a123");
  EXPECT_THAT(seen, testing::ElementsAre("a", "a123"));
}

TEST(RootStore, SubscribersMayComeAndGoWhileTheyAreTold) {
  auto const store = scripted({});
  int told = 0;
  Subscription late;
  Subscription going;
  auto const first = store->didSet.subscribe([&] {
    going.cancel();
    late = store->didSet.subscribe([&] { ++told; });
  });
  going = store->didSet.subscribe([&] { told += 100; });
  store->send('a');
  EXPECT_EQ(told, 0);
  store->send('b');
  EXPECT_EQ(told, 0) << "The one that came was replaced before it was told.";
}

TEST(StoreTask, AwaitsWhatTheSendsOfItsEffectsStarted) {
  Probe inner(Kind::run);
  Probe publisher(Kind::publisher);
  Probe outer(Kind::run);
  auto const store = scripted({
      {'o', [&] { return outer.effect(); }},
      {'p', [&] { return publisher.effect(); }},
      {'i', [&] { return inner.effect(); }},
      {'n', [] { return Letters::send('x'); }},
  });
  EXPECT_FALSE(store->send('n')) << "Nothing was started.";
  auto const task = store->send('o');
  auto const finished = spawn(MainQueue::shared(), task.finish());
  runMainQueue();
  outer.emit('p');
  publisher.emit('i');
  outer.end();
  publisher.end();
  runMainQueue();
  EXPECT_FALSE(finished.isDone());
  inner.end();
  runMainQueue();
  EXPECT_TRUE(finished.isDone());
}

TEST(StoreTask, CancelStopsEverythingThatCameOfTheSend) {
  Probe inner(Kind::run);
  Probe outer(Kind::run);
  Probe other(Kind::run);
  auto const store = scripted({
      {'o', [&] { return outer.effect(); }},
      {'i', [&] { return inner.effect(); }},
      {'x', [&] { return other.effect(); }},
  });
  auto const otherTask = store->send('x');
  auto const task = store->send('o');
  runMainQueue();
  outer.emit('i');
  runMainQueue();
  task.cancel();
  EXPECT_TRUE(isDone(task));
  EXPECT_TRUE(outer.stopped && inner.stopped && other.isRunning());
  other.end();
  EXPECT_TRUE(isDone(otherTask));
}

/// An effect without end, as recording has one, that sends for hours.
TEST(StoreTask, DoesNotCollectWhatHasEnded) {
  Probe endless(Kind::run);
  auto const store = scripted({
      {'s', [&] { return endless.effect(); }},
      {'e', [] { return Letters::run([](auto) -> Task<> { co_return; }); }},
  });
  auto const task = store->send('s');
  runMainQueue();
  for (int i = 0; i < 1'000; ++i) {
    endless.emit('e');
    runMainQueue();
  }
  EXPECT_LE(task.tasks()->size(), 32U);
  endless.end();
  EXPECT_TRUE(isDone(task));
}

// --- Scoped stores

struct Room {
  struct State {
    int id = 0;
    int visits = 0;
    bool operator==(State const&) const = default;
  };
  struct Action {
    struct entered {};
    std::variant<entered> value;
  };
};

struct House {
  struct State {
    Room::State hall;
    IdentifiedArray<Room::State> rooms;
    int other = 0;
    bool operator==(State const&) const = default;
  };
  struct Action {
    struct hall {
      Room::Action action;
    };
    struct rooms {
      IdentifiedAction<int, Room::Action> action;
    };
    struct pulledDown {
      int id;
    };
    struct built {
      Room::State room;
    };
    struct painted {};
    std::variant<hall, rooms, pulledDown, built, painted> value;
  };

  Effect<Action> reduce(State& state, Action const& action) const {
    match(
        action, [&](Action::hall const&) { ++state.hall.visits; },
        [&](Action::rooms const& rooms) {
          state.rooms.update(std::get<0>(rooms.action.value).id,
                             [](Room::State& room) { ++room.visits; });
        },
        [&](Action::pulledDown const& room) { state.rooms.remove(room.id); },
        [&](Action::built const& built) { state.rooms.set(built.room); },
        [&](Action::painted) { ++state.other; });
    return Effect<Action>::none();
  }
};

struct ScopedStoreTest : testing::Test {
  using Hall = KeyPath<&House::State::hall>;
  using HallAction = CasePath<House::Action, House::Action::hall>;
  using Rooms = KeyPath<&House::State::rooms>;
  using RoomsAction = CasePath<House::Action, House::Action::rooms>;

  std::shared_ptr<Store<House::State, House::Action>> house =
      Store<House::State, House::Action>::make(
          {{}, IdentifiedArray<Room::State>({{1, 0}, {2, 0}}), 0}, [] { return House(); });

  auto room(int id) { return house->scope<Rooms, RoomsAction>(id); }
};

TEST_F(ScopedStoreTest, EqualPathsGiveTheSameObject) {
  auto const hall = house->scope<Hall, HallAction>();
  EXPECT_EQ(hall, (house->scope<Hall, HallAction>()));
  EXPECT_EQ(room(1), room(1));
  EXPECT_NE(room(1), room(2));
}

TEST_F(ScopedStoreTest, ReadsAndSendsThroughTheRoot) {
  auto const hall = house->scope<Hall, HallAction>();
  hall->send({Room::Action::entered{}});
  room(2)->send({Room::Action::entered{}});
  EXPECT_EQ(&hall->state(), &house->state().hall) << "It has no copy of the state.";
  EXPECT_EQ(hall->state().visits, 1);
  EXPECT_EQ(house->state().rooms.find(2)->visits, 1);
  EXPECT_FALSE(hall->isInvalidated());
}

TEST_F(ScopedStoreTest, ElementsStoreKeepsTheLastValueAndANewElementGetsANewStore) {
  auto const old = room(1);
  old->send({Room::Action::entered{}});
  house->send({House::Action::pulledDown{1}});
  EXPECT_TRUE(old->isInvalidated());
  EXPECT_EQ(old->state().visits, 1);

  house->send({House::Action::built{{1, 50}}});
  auto const rebuilt = room(1);
  EXPECT_NE(rebuilt, old);
  EXPECT_EQ(rebuilt->state().visits, 50);
  EXPECT_FALSE(rebuilt->isInvalidated());
  EXPECT_EQ(old->state().visits, 1) << "The dead store does not come alive again.";
}

TEST_F(ScopedStoreTest, PublisherEmitsOnEveryDrainAndThatOfAFieldOnlyItsChanges) {
  std::vector<int> states;
  std::vector<int> visits;
  auto const hall = house->scope<Hall, HallAction>();
  auto stateSubscription = hall->publisher().subscribe(
      {[&](Room::State const& state) { states.push_back(state.visits); }, [] {}});
  auto const fieldSubscription = hall->publisher<KeyPath<&Room::State::visits>>().subscribe(
      {[&](int value) { visits.push_back(value); }, [] {}});
  house->send({House::Action::painted{}});
  hall->send({Room::Action::entered{}});
  house->send({House::Action::painted{}});
  EXPECT_THAT(states, testing::ElementsAre(0, 0, 1, 1));
  EXPECT_THAT(visits, testing::ElementsAre(0, 1));
  stateSubscription.cancel();
  house->send({House::Action::painted{}});
  EXPECT_EQ(states.size(), 4U);
}

struct NumberKey {
  using Value = int;
  static int liveValue() { return 1; }
};
constexpr DependencyKeyPath<NumberKey> number;

TEST(Store, ReducerIsBuiltOnceWithTheDependenciesOfTheMoment) {
  std::vector<int> built;
  auto const store = withDependencies([](DependencyValues& values) { values.set(number, 5); },
                                      [&] {
                                        return Store<House::State, House::Action>::make({}, [&] {
                                          built.push_back(*DependencyValues::current()[number]);
                                          return House();
                                        });
                                      });
  store->send({House::Action::painted{}});
  EXPECT_THAT(built, testing::ElementsAre(5));
}

// --- Reducers in a row

struct Child {
  using State = std::string;
  using Action = test::Scripted::Action;
  Effect<Action> reduce(State& state, Action const& action) const {
    state += action.which();
    return Effect<Action>::send('+');
  }
};

struct Parent {
  struct State {
    std::string child;
    std::string text;
  };
  struct Action {
    struct child {
      Child::Action action;
    };
    struct other {};
    std::variant<child, other> value;
  };
};

TEST(Reducers, RunTopToBottomAndScopeTakesItsCaseOnly) {
  using Step = Reduce<Parent::State, Parent::Action>;
  auto const writes = [](char letter) {
    return Step{[letter](Parent::State& state, Parent::Action const& action) {
      state.text += letter;
      // Once for each action of the child that a view sent.
      auto const* child = std::get_if<Parent::Action::child>(&action.value);
      return child && child->action.which() == 'a'
                 ? Effect<Parent::Action>::send({Parent::Action::child{letter}})
                 : Effect<Parent::Action>::none();
    }};
  };
  Reducers const all(
      writes('1'),
      Scope<KeyPath<&Parent::State::child>, CasePath<Parent::Action, Parent::Action::child>, Child>{
          {}},
      writes('2'));
  static_assert(Reducer<decltype(all)>);
  static_assert(!Reducer<Parent>, "A reducer has a step.");

  Parent::State state;
  (void)all.reduce(state, {Parent::Action::other{}});
  EXPECT_EQ(state.child, "");
  EXPECT_EQ(state.text, "12");

  auto effect = all.reduce(state, {Parent::Action::child{'a'}});
  EXPECT_EQ(state.child, "a");
  EXPECT_EQ(state.text, "1212");
  std::string sent;
  auto const subscription =
      std::get<Publisher<Parent::Action>>(effect.operation)
          .subscribe({[&](Parent::Action const& action) {
                        sent += std::get<Parent::Action::child>(action.value).action.which();
                      },
                      [&] { sent += '.'; }});
  EXPECT_EQ(sent, "1+2.") << "The effects in the order of the reducers.";
}

}  // namespace
}  // namespace vek
