// SPDX-License-Identifier: MIT
#include "app/SessionRun.hpp"

#include <atomic>
#include <chrono>
#include <memory>
#include <utility>

#include "runtime/MainQueue.hpp"
#include "runtime/Store.hpp"

namespace vek {

namespace {

using SessionStore = Store<SessionFeature::State, SessionFeature::Action>;
using Mark = std::shared_ptr<std::atomic<bool>>;

constexpr std::chrono::milliseconds pollInterval(50);

Task<bool> marked(Task<bool> task, Mark mark) {
  bool const isDone = co_await std::move(task);
  *mark = isDone;
  co_return isDone;
}

/// The client as it is, with a mark of what it has changed: a session itself does not ask.
CredentialsClient marking(CredentialsClient client, Mark const& mark) {
  client.storeCredentials = [store = client.storeCredentials, mark](Credentials credentials) {
    return marked(store(std::move(credentials)), mark);
  };
  client.logOut = [logOut = client.logOut, mark] { return marked(logOut(), mark); };
  return client;
}

}  // namespace

SessionRun SessionRun::of(SessionFeature::Action action, Signals& signals) {
  auto const mark = std::make_shared<std::atomic<bool>>(false);
  return withDependencies(
      [&](DependencyValues& values) {
        values.set(credentialsClient, marking(*values[credentialsClient], mark));
      },
      [&] {
        auto const store = SessionStore::make({}, [] { return SessionFeature(); });
        auto const effects = store->send(std::move(action));
        bool isInterrupted = false;
        signals.onSignal([&](int) {
          isInterrupted = true;
          effects.cancel();
        });
        MainQueue::shared().runUntil([&] { return effects.tasks()->isDone(); }, pollInterval);
        signals.onSignal(nullptr);
        return SessionRun{store->state(), isInterrupted, *mark};
      });
}

}  // namespace vek
