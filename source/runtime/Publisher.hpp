// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <variant>

#include "runtime/Subscription.hpp"

namespace vek {

/// Who takes what a publisher gives. Values come one at a time and none after the completion.
template <class T>
struct Subscriber {
  UniqueFunction<void(T const&)> onValue;
  UniqueFunction<void()> onCompletion;
};

/// A sequence of values over time that never fails. Each subscription starts it anew; values may
/// come before `subscribe` has returned. A copy stands for the same sequence.
template <class T>
class Publisher {
 public:
  using Subscribe = std::function<Subscription(Subscriber<T>)>;

  explicit Publisher(Subscribe subscribe) : source_(std::move(subscribe)) {}

  /// Gives one value and completes, inside `subscribe`.
  static Publisher just(T value) { return Publisher(Just{std::move(value)}); }

  [[nodiscard]] Subscription subscribe(Subscriber<T> subscriber) const {
    if (auto const* only = std::get_if<Just>(&source_)) {
      subscriber.onValue(only->value);
      subscriber.onCompletion();
      return {};
    }
    return std::get<Subscribe>(source_)(std::move(subscriber));
  }

  /// The value of a publisher that was made by `just`.
  [[nodiscard]] T const* justValue() const {
    auto const* only = std::get_if<Just>(&source_);
    return only ? &only->value : nullptr;
  }

  template <class U, class Transform>
  Publisher<U> map(Transform transform) const {
    if (auto const* value = justValue()) return Publisher<U>::just(transform(*value));
    return Publisher<U>([source = *this, transform](Subscriber<U> subscriber) {
      auto const shared = std::make_shared<Subscriber<U>>(std::move(subscriber));
      return source.subscribe(
          {[shared, transform](T const& value) { shared->onValue(transform(value)); },
           [shared] { shared->onCompletion(); }});
    });
  }

 private:
  struct Just {
    T value;
  };
  explicit Publisher(Just only) : source_(std::move(only)) {}

  std::variant<Just, Subscribe> source_;
};

}  // namespace vek
