// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "runtime/CallbackOperation.hpp"

namespace vek::test {

/// The calls of an operation, which wait until the test answers them. Outlives whoever calls.
template <class T>
class PendingCalls {
 public:
  Task<T> call() {
    co_return co_await callbackOperation<T>(
        [this](Completion<T> completion) { waiting_.push_back(std::move(completion)); },
        [this] { ++cancelled_; });
  }

  /// Those not answered yet, the cancelled ones included.
  [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }
  [[nodiscard]] int cancelled() const { return cancelled_; }

  /// Ends the call that waits longest.
  void answer(T value) { next().resolve(std::move(value)); }
  void fail(std::string const& text) {
    next().reject(std::make_exception_ptr(std::runtime_error(text)));
  }

 private:
  Completion<T> next() {
    auto first = std::move(waiting_.at(0));
    waiting_.pop_front();
    return first;
  }

  std::deque<Completion<T>> waiting_;
  int cancelled_ = 0;
};

}  // namespace vek::test
