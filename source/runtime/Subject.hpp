// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "runtime/Stream.hpp"

namespace vek {

/// Sends items to all who iterate at that moment; an item sent while nobody iterates is lost. Its
/// end is kept for those who come later. Copies stand for the same subject; any thread may use it.
template <class T>
class Subject {
 public:
  void send(T item) const {
    for (auto const& subscriber : state_->present()) subscriber.yield(item);
  }

  void sendCompletion() const { sendCompletion(nullptr); }
  void sendCompletion(std::exception_ptr error) const {
    std::vector<StreamContinuation<T>> subscribers;
    {
      std::lock_guard lock(state_->mutex);
      if (state_->end) return;
      state_->end = error;
      subscribers.swap(state_->subscribers);
    }
    for (auto const& subscriber : subscribers) subscriber.finish(error);
  }

  /// The items sent from the moment when the first one is asked for.
  [[nodiscard]] Stream<T> values() const {
    return Stream<T>::deferred(
        [state = state_](StreamContinuation<T> const& subscriber) { state->add(subscriber); });
  }

 private:
  struct State {
    std::mutex mutex;
    std::vector<StreamContinuation<T>> subscribers;
    std::optional<std::exception_ptr> end;

    void add(StreamContinuation<T> const& subscriber) {
      std::unique_lock lock(mutex);
      if (!end) return subscribers.push_back(subscriber);
      auto const error = *end;
      lock.unlock();
      subscriber.finish(error);
    }

    std::vector<StreamContinuation<T>> present() {
      std::lock_guard lock(mutex);
      std::erase_if(subscribers, [](auto const& subscriber) { return subscriber.isAbandoned(); });
      return subscribers;
    }
  };

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace vek
