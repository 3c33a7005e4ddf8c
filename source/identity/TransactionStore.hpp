// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <utility>

#include "identity/LoginTransaction.hpp"

namespace vek {

/// The login that is waiting for its redirect. There is one at a time.
class TransactionStore {
 public:
  /// The one of this process, never released.
  static TransactionStore& shared() {
    static auto* const instance = new TransactionStore;
    return *instance;
  }

  /// False, and nothing changes, while another login is waiting.
  [[nodiscard]] bool store(std::shared_ptr<LoginTransaction> transaction) {
    std::lock_guard const lock(mutex_);
    if (current_) return false;
    current_ = std::move(transaction);
    return true;
  }

  [[nodiscard]] std::shared_ptr<LoginTransaction> current() const {
    std::lock_guard const lock(mutex_);
    return current_;
  }

  /// The login that was waiting, if one was: from now on none is.
  [[nodiscard]] std::shared_ptr<LoginTransaction> take() {
    std::lock_guard const lock(mutex_);
    return std::exchange(current_, nullptr);
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<LoginTransaction> current_;
};

}  // namespace vek
