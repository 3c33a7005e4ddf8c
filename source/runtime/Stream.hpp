// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "runtime/CallbackOperation.hpp"

namespace vek {

namespace detail {

template <class T>
struct StreamState {
  using Item = std::optional<T>;

  std::mutex mutex;
  std::deque<T> buffer;
  bool ended = false;
  std::exception_ptr error;
  std::optional<Completion<Item>> waiting;
  /// Runs once, when the first item is asked for.
  UniqueFunction<void()> onFirstNext;

  void yield(T item) {
    std::lock_guard lock(mutex);
    if (ended) return;
    if (auto waiter = std::exchange(waiting, std::nullopt)) {
      Item value(std::move(item));
      // A waiter that was cancelled leaves the item for the next one.
      if (waiter->resolve(std::move(value))) return;
      item = std::move(*value);  // NOLINT(bugprone-use-after-move): left as it was
    }
    buffer.push_back(std::move(item));
  }

  void finish(std::exception_ptr failure) {
    std::lock_guard lock(mutex);
    if (ended) return;
    ended = true;
    error = std::move(failure);
    if (auto waiter = std::exchange(waiting, std::nullopt)) answer(*waiter);
  }

  void wait(Completion<Item> completion) {
    std::lock_guard lock(mutex);
    if (buffer.empty() && !ended) {
      waiting.emplace(std::move(completion));
    } else {
      answer(completion);
    }
  }

 private:
  void answer(Completion<Item> const& completion) {
    if (!buffer.empty()) {
      Item item(std::move(buffer.front()));
      if (completion.resolve(std::move(item))) {
        buffer.pop_front();
      } else {
        buffer.front() = std::move(*item);  // NOLINT(bugprone-use-after-move): left as it was
      }
    } else if (auto failure = std::exchange(error, nullptr)) {
      completion.reject(std::move(failure));
    } else {
      completion.resolve(Item());
    }
  }
};

}  // namespace detail

/// The producer's side of a stream. Copies feed the same stream, on any thread. It does not keep
/// the stream: what is yielded when nobody holds the consumer's side any more is dropped.
template <class T>
class StreamContinuation {
 public:
  StreamContinuation() = default;

  void yield(T item) const {
    if (auto state = state_.lock()) state->yield(std::move(item));
  }
  /// Ends the stream behind the items that it still holds; a second end does nothing.
  void finish() const { finish(nullptr); }
  void finish(std::exception_ptr error) const {
    if (auto state = state_.lock()) state->finish(std::move(error));
  }
  /// True when the consumer's side is gone.
  [[nodiscard]] bool isAbandoned() const { return state_.expired(); }

 private:
  template <class U>
  friend class Stream;
  explicit StreamContinuation(std::shared_ptr<detail::StreamState<T>> const& state)
      : state_(state) {}

  std::weak_ptr<detail::StreamState<T>> state_;
};

/// The consumer's side of a sequence of items over time, with an end or an error after the last.
/// Unbounded: nothing is dropped, however slow the consumer. One consumer at a time.
template <class T>
class Stream {
 public:
  struct Ends;

  /// A stream and the side that feeds it.
  static Ends makeStream() {
    Stream stream(std::make_shared<detail::StreamState<T>>());
    StreamContinuation<T> continuation(stream.state_);
    return {std::move(stream), std::move(continuation)};
  }

  /// A stream that calls `subscribe` when its first item is asked for.
  template <class Subscribe>
  static Stream deferred(Subscribe subscribe) {
    auto ends = makeStream();
    ends.stream.state_->onFirstNext = [subscribe = std::move(subscribe),
                                       continuation = std::move(ends.continuation)] {
      subscribe(continuation);
    };
    return std::move(ends.stream);
  }

  /// The next item; nothing at the end. Throws the error that ended the stream, once, and
  /// `CancellationError` when the awaiting work is told to stop; no item is lost by that.
  Task<std::optional<T>> next() const {
    auto const state = state_;
    if (auto subscribe = std::exchange(state->onFirstNext, nullptr)) subscribe();
    co_return co_await callbackOperation<std::optional<T>>(
        [&state](Completion<std::optional<T>> completion) { state->wait(std::move(completion)); });
  }

 private:
  explicit Stream(std::shared_ptr<detail::StreamState<T>> state) : state_(std::move(state)) {}

  std::shared_ptr<detail::StreamState<T>> state_;
};

template <class T>
struct Stream<T>::Ends {
  Stream<T> stream;
  StreamContinuation<T> continuation;
};

}  // namespace vek
