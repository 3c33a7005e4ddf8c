// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "runtime/MainQueue.hpp"
#include "runtime/Publisher.hpp"

namespace vek {

namespace detail {

template <class T>
struct MainRelay {
  explicit MainRelay(Subscriber<T> to) : subscriber(std::move(to)) {}

  Subscriber<T> subscriber;
  /// Posted and not yet delivered: what comes now goes behind them, from the main thread too.
  std::atomic<int> underWay = 0;
  std::atomic<bool> cancelled = false;

  [[nodiscard]] bool deliversAtOnce() const {
    return MainQueue::shared().isMainThread() && underWay == 0;
  }
  template <class Work>
  static void post(std::shared_ptr<MainRelay> const& relay, Work work) {
    ++relay->underWay;
    MainQueue::shared().post([relay, work = std::move(work)] {
      --relay->underWay;
      if (!relay->cancelled) work(relay->subscriber);
    });
  }
};

}  // namespace detail

/// The same publisher, received on the main thread: at once what comes there, posted what comes
/// from another thread, in the order of emission. Nothing is received after cancelling.
template <class T>
Publisher<T> receivedOnMain(Publisher<T> source) {
  return Publisher<T>([source = std::move(source)](Subscriber<T> subscriber) {
    auto const relay = std::make_shared<detail::MainRelay<T>>(std::move(subscriber));
    using Relay = detail::MainRelay<T>;
    auto upstream = source.subscribe(
        {[relay](T const& value) {
           if (!relay->deliversAtOnce()) {
             Relay::post(relay, [value](Subscriber<T> const& to) { to.onValue(value); });
           } else if (!relay->cancelled) {
             relay->subscriber.onValue(value);
           }
         },
         [relay] {
           // Held, since completing may let go of this subscription.
           auto const held = relay;  // NOLINT(performance-unnecessary-copy-initialization)
           if (!held->deliversAtOnce()) {
             Relay::post(held, [](Subscriber<T> const& to) { to.onCompletion(); });
           } else if (!held->cancelled) {
             held->subscriber.onCompletion();
           }
         }});
    return Subscription([relay, upstream = std::move(upstream)]() mutable {
      relay->cancelled = true;
      upstream.cancel();
    });
  });
}

}  // namespace vek
