// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

#include "runtime/EffectRuns.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/Publisher.hpp"
#include "runtime/ReceivedOnMain.hpp"

namespace vek {

/// A run effect as a publisher: each subscription starts the task, its end completes the publisher
/// and cancelling the subscription stops it.
template <class Action>
Publisher<Action> _EffectPublisher(RunEffect<Action> run) {
  return Publisher<Action>([run = std::move(run)](Subscriber<Action> subscriber) {
    auto const shared = std::make_shared<Subscriber<Action>>(std::move(subscriber));
    Send<Action> send([shared](Action action, std::stop_token token) {
      MainQueue::shared().runOrPost([shared, action = std::move(action), token = std::move(token)] {
        if (!token.stop_requested()) shared->onValue(action);
      });
    });
    auto untilEnd = [](RunEffect<Action> work, Send<Action> sending,
                       std::shared_ptr<Subscriber<Action>> ended) -> Task<> {
      co_await perform(work, std::move(sending));
      if (!Environment::isCancelled()) ended->onCompletion();
    };
    auto const task =
        spawn(MainQueue::shared(), untilEnd(run, std::move(send), shared), run.dependencies);
    return Subscription([task] { task.cancel(); });
  });
}

namespace detail {

/// Two publishers that feed one subscriber, at once or one after the other. Values are passed on as
/// they come; which thread brings them is the store's concern.
template <class Action>
struct Joined {
  explicit Joined(Subscriber<Action> to) : subscriber(std::move(to)) {}

  Subscriber<Action> subscriber;
  std::atomic<int> running = 2;
  std::mutex mutex;
  bool cancelled = false;
  std::array<Subscription, 2> parts;

  void completeOne() {
    if (running.fetch_sub(1) == 1) subscriber.onCompletion();
  }
  void keep(std::size_t place, Subscription part) {
    std::unique_lock lock(mutex);
    if (cancelled) {
      lock.unlock();
      return part.cancel();
    }
    parts.at(place) = std::move(part);
  }
  void cancel() {
    std::array<Subscription, 2> stopped;
    {
      std::lock_guard lock(mutex);
      cancelled = true;
      stopped.swap(parts);
    }
  }
};

}  // namespace detail

template <class Action>
Publisher<Action> mergedPublishers(Publisher<Action> first, Publisher<Action> second) {
  return Publisher<Action>(
      [first = std::move(first), second = std::move(second)](Subscriber<Action> subscriber) {
        auto const joined = std::make_shared<detail::Joined<Action>>(std::move(subscriber));
        auto part = [joined] {
          return Subscriber<Action>{
              [joined](Action const& action) { joined->subscriber.onValue(action); },
              [joined] { joined->completeOne(); }};
        };
        joined->keep(0, first.subscribe(part()));
        joined->keep(1, second.subscribe(part()));
        return Subscription([joined] { joined->cancel(); });
      });
}

template <class Action>
Publisher<Action> concatenatedPublishers(Publisher<Action> first, Publisher<Action> second) {
  return Publisher<Action>([first = std::move(first),
                            second = std::move(second)](Subscriber<Action> subscriber) {
    auto const joined = std::make_shared<detail::Joined<Action>>(std::move(subscriber));
    auto onValue = [joined](Action const& action) { joined->subscriber.onValue(action); };
    joined->keep(0, first.subscribe({onValue, [joined, onValue, second] {
                                       joined->keep(
                                           1, second.subscribe({onValue, [joined] {
                                                                  joined->subscriber.onCompletion();
                                                                }}));
                                     }}));
    return Subscription([joined] { joined->cancel(); });
  });
}

namespace detail {

/// A publisher that ends early when its id is cancelled.
template <class Action>
struct UntilCancelled {
  UntilCancelled(Subscriber<Action> to, _CancelID under)
      : subscriber(std::move(to)), id(std::move(under)) {}

  Subscriber<Action> subscriber;
  _CancelID id;
  CancellablesCollection::Key key = 0;
  Subscription upstream;
  std::atomic<bool> ended = false;

  /// True for the first who ends it.
  bool end() {
    if (ended.exchange(true)) return false;
    CancellablesCollection::shared().remove(id, key);
    return true;
  }
};

}  // namespace detail

template <class Action>
Publisher<Action> cancellablePublisher(Publisher<Action> publisher, _CancelID id,
                                       CancelInFlight cancelInFlight) {
  // On the main thread, where it is cancelled: what is under way to it then is dropped.
  return Publisher<Action>([source = receivedOnMain(std::move(publisher)), id = std::move(id),
                            cancelInFlight](Subscriber<Action> subscriber) {
    auto& cancellables = CancellablesCollection::shared();
    if (cancelInFlight == CancelInFlight::yes) cancellables.cancel(id);
    auto const relay = std::make_shared<detail::UntilCancelled<Action>>(std::move(subscriber), id);
    auto endEarly = [weak = std::weak_ptr(relay)] {
      auto const running = weak.lock();
      if (!running || !running->end()) return;
      running->upstream.cancel();
      running->subscriber.onCompletion();
    };
    relay->key = cancellables.insert(id, endEarly);
    relay->upstream =
        source.subscribe({[relay](Action const& action) { relay->subscriber.onValue(action); },
                          [relay] {
                            if (relay->end()) relay->subscriber.onCompletion();
                          }});
    return Subscription([relay] {
      relay->end();
      relay->upstream.cancel();
    });
  });
}

}  // namespace vek
