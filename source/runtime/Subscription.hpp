// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "runtime/UniqueFunction.hpp"

namespace vek {

/// Keeps something going until it is cancelled or let go.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(UniqueFunction<void()> cancel) : cancel_(std::move(cancel)) {}
  Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      cancel();
      cancel_ = std::exchange(other.cancel_, nullptr);
    }
    return *this;
  }
  ~Subscription() { cancel(); }

  void cancel() {
    if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
  }

 private:
  UniqueFunction<void()> cancel_;
};

}  // namespace vek
