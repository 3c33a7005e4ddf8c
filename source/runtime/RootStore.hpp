// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "runtime/Dependency.hpp"
#include "runtime/Describe.hpp"
#include "runtime/Effect.hpp"
#include "runtime/ReceivedOnMain.hpp"
#include "runtime/StoreTask.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// Tells subscribers, in the order in which they came, that something happened. Main thread.
class Relay {
 public:
  Subscription subscribe(UniqueFunction<void()> subscriber);
  void fire() const;

 private:
  struct Subscribers;
  std::shared_ptr<Subscribers> subscribers_;
};

/// The part of the root that does not depend on its state and actions.
class RootStore : public std::enable_shared_from_this<RootStore> {
 public:
  RootStore() = default;
  RootStore(RootStore const&) = delete;
  RootStore& operator=(RootStore const&) = delete;
  virtual ~RootStore() = default;

  /// Fires after each write of the state.
  Relay didSet;

  /// Publisher effects that still run.
  [[nodiscard]] std::size_t liveEffectCount() const { return effectCancellables.size(); }

 protected:
  bool isSending = false;
  std::unordered_map<UUID, Subscription> effectCancellables;
};

void reportSendAfterCompletion(std::string const& action, std::string const& origin);

/// The owner of all state of the process; state changes only in `send`. Main thread.
template <class State, class Action, class Reducer>
class RootStoreOf final : public RootStore {
 public:
  RootStoreOf(State initialState, Reducer reducer_)
      : state_(std::move(initialState)), reducer(std::move(reducer_)) {}

  [[nodiscard]] State const& state() const { return state_; }

  /// Reduces `action` and all that its immediate effects send, in order, then writes the state
  /// once.
  StoreTask send(Action action) {
    bufferedActions.push_back(std::move(action));
    if (isSending) return {};
    isSending = true;
    std::shared_ptr<TaskList> tasks;
    drain(tasks);
    isSending = false;
    if (!bufferedActions.empty()) {
      auto last = std::move(bufferedActions.back());
      bufferedActions.pop_back();
      if (auto task = send(std::move(last))) collect(tasks, task);
    }
    return StoreTask(std::move(tasks));
  }

 private:
  /// What the sends of one effect share with the store.
  struct Origin {
    std::weak_ptr<RootStore> store;
    std::shared_ptr<TaskList> tasks;
    std::string action;
    /// The scope in which the store acted on the effect: what the effect sends is reduced in it.
    DependencyValues::Continuation scope;
    bool isCompleted = false;
  };

  static void collect(std::shared_ptr<TaskList>& tasks, StoreTask const& task) {
    if (!tasks) tasks = std::make_shared<TaskList>();
    tasks->add(task.tasks());
  }

  void drain(std::shared_ptr<TaskList>& tasks) {
    auto working = state_;
    for (std::size_t index = 0; index < bufferedActions.size(); ++index) {
      // Moved out first: an immediate effect may grow the buffer.
      auto const action = std::move(bufferedActions[index]);
      act(reducer.reduce(working, action), action, tasks);
    }
    bufferedActions.clear();
    state_ = std::move(working);
    didSet.fire();
  }

  void act(Effect<Action> effect, Action const& action, std::shared_ptr<TaskList>& tasks) {
    if (auto* publisher = std::get_if<Publisher<Action>>(&effect.operation)) {
      if (auto const* value = publisher->justValue()) {
        bufferedActions.push_back(*value);
      } else {
        subscribe(*publisher, tasks);
      }
    } else if (auto* run = std::get_if<RunEffect<Action>>(&effect.operation)) {
      start(std::move(*run), action, tasks);
    }
  }

  void subscribe(Publisher<Action> const& publisher, std::shared_ptr<TaskList>& tasks) {
    struct Progress {
      bool isCompleted = false;
      TaskHandle waiting;
    };
    auto const progress = std::make_shared<Progress>();
    auto const id = UUID::random();
    if (!tasks) tasks = std::make_shared<TaskList>();
    auto const scope = DependencyValues::Continuation(DependencyValues::current());
    auto const self = std::weak_ptr(std::static_pointer_cast<RootStoreOf>(shared_from_this()));
    auto onValue = [self, scope, tasks](Action const& action) {
      auto const store = self.lock();
      if (!store) return;
      auto const task = scope.yield([&] { return store->send(action); });
      if (task) tasks->add(task.tasks());
    };
    auto onCompletion = [self, progress, id] {
      progress->isCompleted = true;
      progress->waiting.cancel();
      if (auto const store = self.lock()) store->effectCancellables.erase(id);
    };
    auto subscription = receivedOnMain(publisher).subscribe({onValue, onCompletion});
    if (progress->isCompleted) return;
    effectCancellables.emplace(id, std::move(subscription));
    progress->waiting = spawn(MainQueue::shared(), untilCancelled(self, id));
    tasks->add(progress->waiting);
  }

  /// Stands for a publisher in the list of tasks: cancelling it ends the subscription.
  static Task<> untilCancelled(std::weak_ptr<RootStoreOf> self, UUID id) {
    co_await attempt(never());
    if (auto const store = self.lock()) store->effectCancellables.erase(id);
  }

  static Task<> never() {
    co_await callbackOperation<bool>([](Completion<bool> const&) {});
  }

  void start(RunEffect<Action> run, Action const& action, std::shared_ptr<TaskList>& tasks) {
    if (!tasks) tasks = std::make_shared<TaskList>();
    auto const origin = std::make_shared<Origin>(
        Origin{weak_from_this(), tasks, describe(action),
               DependencyValues::Continuation(DependencyValues::current())});
    Send<Action> send([origin](Action sent, std::stop_token token) {
      if (MainQueue::shared().isMainThread()) return deliver(origin, std::move(sent), token);
      MainQueue::shared().post(
          [origin, sent = std::move(sent), token = std::move(token)]() mutable {
            deliver(origin, std::move(sent), token);
          });
    });
    tasks->add(
        spawn(MainQueue::shared(),
              untilCompleted(std::move(run.operation), run.location, std::move(send), origin),
              std::move(run.dependencies)));
  }

  static Task<> untilCompleted(typename RunEffect<Action>::Body operation,
                               std::source_location location, Send<Action> send,
                               std::shared_ptr<Origin> origin) {
    try {
      co_await operation(std::move(send));
    } catch (...) {
      reportUnhandledError(location, std::current_exception());
    }
    origin->isCompleted = true;
  }

  static void deliver(std::shared_ptr<Origin> const& origin, Action action,
                      std::stop_token const& token) {
    if (token.stop_requested()) return;
    auto const store = std::static_pointer_cast<RootStoreOf>(origin->store.lock());
    if (!store) return;
    if (origin->isCompleted) reportSendAfterCompletion(describe(action), origin->action);
    auto const task = origin->scope.yield([&] { return store->send(std::move(action)); });
    if (task) origin->tasks->add(task.tasks());
  }

  State state_;
  Reducer reducer;
  std::vector<Action> bufferedActions;
};

}  // namespace vek
