// SPDX-License-Identifier: MIT
// What the store costs beside the plainest way to do the same, in one run. Ends with 1 when a bound
// is missed.
#include <fmt/core.h>
#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "records/Transcript.hpp"
#include "runtime/ForEach.hpp"
#include "runtime/Match.hpp"
#include "runtime/Store.hpp"

namespace vek {
namespace {

/// Nanoseconds of processor time, since others use the machine too.
double now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// What one of `count` calls takes, in nanoseconds: the best of several rounds.
double cost(int count, auto work) {
  double best = 1e18;
  for (int round = 0; round < 9; ++round) {
    auto const start = now();
    for (int i = 0; i < count; ++i) work();
    best = std::min(best, (now() - start) / count);
  }
  return best;
}

int missed = 0;

void print(char const* what, double value, char const* beside, double other) {
  fmt::print("{:<44} {:>12.1f}   {:<34} {:>12.1f}   ratio {:.2f}\n", what, value, beside, other,
             value / other);
}

void expectAtMost(char const* what, double value, double bound) {
  bool const holds = value <= bound;
  fmt::print("{:<44} {:>12.4f}   at most {:<10} {}\n", what, value, bound, holds ? "" : "MISSED");
  if (!holds) ++missed;
}

void runMainQueue() {
  while (MainQueue::shared().runPending() > 0) {
  }
}

// --- A list of transcripts in state

constexpr int listLength = 10'000;

UUID idOf(int number) {
  return *UUID::parse(fmt::format("00000000-0000-4000-8000-{:012}", number));
}

std::vector<Transcript> transcripts() {
  std::vector<Transcript> list;
  list.reserve(listLength);
  SharedText const text(std::string(2'000, 'x'));
  for (int i = 0; i < listLength; ++i) {
    list.push_back({idOf(i), Date(std::chrono::seconds(i)), idOf(i % 12),
                    TranscriptContentState::content{text}, TranscriptContentState::content{text}});
  }
  return list;
}

struct Touch {
  int position;
  UUID id;
};

/// Changes one transcript, in a list of either kind.
template <class List>
struct ListFeature {
  struct State {
    List list;
  };
  using Action = Touch;

  Effect<Touch> reduce(State& state, Touch const& action) const {
    auto const touch = [](Transcript& transcript) {
      transcript.startDate += std::chrono::seconds(1);
    };
    if constexpr (requires { state.list.update(action.id, touch); }) {
      state.list.update(action.id, touch);
    } else {
      touch(state.list[static_cast<std::size_t>(action.position)]);
    }
    return Effect<Touch>::none();
  }
};

template <class List>
double costOfAChange(int count) {
  using Feature = ListFeature<List>;
  auto const store =
      Store<typename Feature::State, Touch>::make({List(transcripts())}, [] { return Feature(); });
  int position = 0;
  return cost(count, [&] {
    position = (position + 4'099) % listLength;
    store->send({position, idOf(position)});
  });
}

void lists() {
  auto const ids = cost(20'000, [] { (void)idOf(7); });
  auto const chunks = costOfAChange<IdentifiedArray<Transcript>>(5'000) - ids;
  auto const vector = costOfAChange<std::vector<Transcript>>(50) - ids;
  print("change 1 of 10,000 transcripts, ns", chunks, "over std::vector", vector);
  expectAtMost("  part of the cost over std::vector", chunks / vector, 0.01);
}

// --- A tree of features like the program's

struct Slot {
  struct State {
    int count = 0;
    bool isLoading = false;
    std::optional<UUID> id = UUID();
    std::string name = "short";
    SharedText text = "a long text";
  };
  struct Action {
    struct plain {};
    struct sendsOne {};
    struct runsOne {};
    struct waits {};
    std::variant<plain, sendsOne, runsOne, waits> value;
  };
  enum class CancelID { waiting };

  Effect<Action> reduce(State& state, Action const& action) const {
    return match(
        action,
        [&](Action::plain) {
          ++state.count;
          return Effect<Action>::none();
        },
        [&](Action::sendsOne) { return Effect<Action>::send({Action::plain{}}); },
        [&](Action::runsOne) {
          return Effect<Action>::run([](Send<Action> send) -> Task<> {
            send({Action::plain{}});
            co_return;
          });
        },
        [&](Action::waits) {
          return Effect<Action>::run([](Send<Action>) -> Task<> {
                   co_await callbackOperation<bool>([](Completion<bool> const&) {});
                 })
              .cancellable(CancelID::waiting);
        });
  }
};

struct Tree {
  struct State {
    Slot::State session, permissions, menu, recording;
    IdentifiedArray<Transcript> transcripts;
  };
  struct Action {
    struct session {
      Slot::Action action;
    };
    struct permissions {
      Slot::Action action;
    };
    struct menu {
      Slot::Action action;
    };
    struct recording {
      Slot::Action action;
    };
    struct cancelled {};
    std::variant<session, permissions, menu, recording, cancelled> value;
  };

  Effect<Action> reduce(State&, Action const& action) const {
    if (!std::holds_alternative<Action::cancelled>(action.value)) return Effect<Action>::none();
    return Effect<Action>::cancel(Slot::CancelID::waiting);
  }
};

auto tree() {
  return Reducers(
      Scope<KeyPath<&Tree::State::session>, CasePath<Tree::Action, Tree::Action::session>, Slot>{},
      Scope<KeyPath<&Tree::State::permissions>, CasePath<Tree::Action, Tree::Action::permissions>,
            Slot>{},
      Scope<KeyPath<&Tree::State::menu>, CasePath<Tree::Action, Tree::Action::menu>, Slot>{},
      Scope<KeyPath<&Tree::State::recording>, CasePath<Tree::Action, Tree::Action::recording>,
            Slot>{},
      Tree());
}

using TreeStore = Store<Tree::State, Tree::Action>;

auto makeStore() {
  return TreeStore::make({{}, {}, {}, {}, IdentifiedArray<Transcript>(transcripts())}, tree);
}

template <class Case>
Tree::Action recording(Case which) {
  return {Tree::Action::recording{{which}}};
}

double costOfAction() {
  auto const store = makeStore();
  return cost(200'000, [&] { store->send(recording(Slot::Action::plain{})); });
}

void actions() {
  auto const reducer = tree();
  Tree::State state;
  auto const direct =
      cost(200'000, [&] { (void)reducer.reduce(state, recording(Slot::Action::plain{})); });
  auto const action = costOfAction();
  print("plain action, ns", action, "the reducer called directly", direct);
  expectAtMost("  times the direct call", action / direct, 4);

  auto const store = makeStore();
  auto const hop = cost(200'000, [&] { store->send(recording(Slot::Action::sendsOne{})); });
  print("action that sends another, ns", hop, "two plain actions", 2 * action);

  auto const run = cost(50'000, [&] {
    store->send(recording(Slot::Action::runsOne{}));
    runMainQueue();
  });
  auto const posted = cost(50'000, [&] {
    store->send(recording(Slot::Action::plain{}));
    MainQueue::shared().post([&] { store->send(recording(Slot::Action::plain{})); });
    runMainQueue();
  });
  print("run effect that sends one back, ns", run, "two actions, one of them posted", posted);

  int told = 0;
  std::vector<Subscription> subscriptions;
  subscriptions.reserve(10);
  auto const child =
      store->scope<KeyPath<&Tree::State::session>, CasePath<Tree::Action, Tree::Action::session>>();
  for (int i = 0; i < 10; ++i) {
    subscriptions.push_back(
        child->publisher<KeyPath<&Slot::State::count>>().subscribe({[&](int) { ++told; }, [] {}}));
  }
  auto const observed = cost(200'000, [&] { store->send(recording(Slot::Action::plain{})); });
  print("action with 10 subscribers that skip, ns", observed, "without subscribers", action);
}

// --- Effects in flight

struct InFlight {
  double startedNs;
  double bytes;
  double cancelledNs;
};

/// The least that one can do: one feature, an effect that only waits.
struct Waiting {
  struct State {};
  struct Action {
    enum Which : bool { wait, cancel } which;
  };
  Effect<Action> reduce(State&, Action const& action) const {
    if (action.which == Action::cancel) return Effect<Action>::cancel(Slot::CancelID::waiting);
    return Effect<Action>::run([](Send<Action>) -> Task<> {
      co_await callbackOperation<bool>([](Completion<bool> const&) {});
    });
  }
};

/// Each figure for one effect of `count` that wait at the same time.
template <class Cancel>
InFlight effectsInFlight(int count, auto const& store, auto const& wait, Cancel cancel) {
  std::vector<StoreTask> tasks;
  tasks.reserve(static_cast<std::size_t>(count));
  auto const before = mallinfo2().uordblks;
  auto start = now();
  for (int i = 0; i < count; ++i) tasks.push_back(store->send(wait));
  runMainQueue();
  InFlight result{(now() - start) / count, 0, 0};
  result.bytes = static_cast<double>(mallinfo2().uordblks - before) / count;
  start = now();
  cancel(tasks);
  runMainQueue();
  result.cancelledNs = (now() - start) / count;
  return result;
}

InFlight plainEffects(int count) {
  auto const store = Store<Waiting::State, Waiting::Action>::make({}, [] { return Waiting(); });
  return effectsInFlight(count, store, Waiting::Action{Waiting::Action::wait},
                         [](std::vector<StoreTask> const& tasks) {
                           for (auto const& task : tasks) task.cancel();
                         });
}

InFlight cancellableEffects(int count) {
  auto const store = makeStore();
  return effectsInFlight(count, store, recording(Slot::Action::waits{}),
                         [&](auto const&) { store->send({Tree::Action::cancelled{}}); });
}

InFlight effects(char const* what, InFlight (*measure)(int)) {
  fmt::print("{}\n", what);
  (void)measure(10'000);
  auto const few = measure(10'000);
  auto const many = measure(40'000);
  print("  start of one of 10,000, ns", few.startedNs, "of 40,000", many.startedNs);
  print("  cancelling one of 10,000, ns", few.cancelledNs, "of 40,000", many.cancelledNs);
  expectAtMost("  growth with four times as many", many.cancelledNs / few.cancelledNs, 2);
  return few;
}

}  // namespace
}  // namespace vek

int main() {
  using namespace vek;
  lists();
  actions();
  auto const plain = effects("effects in flight", plainEffects);
  auto const inTree =
      effects("effects in flight in a tree, cancelled by their id", cancellableEffects);
  print("bytes of one in a tree with an id", inTree.bytes, "of one without", plain.bytes);
  expectAtMost("  bytes of one without", plain.bytes, 1024);
  return missed > 0 ? 1 : 0;
}
