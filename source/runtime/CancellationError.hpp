// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

namespace vek {

/// What awaiting work gets when it was told to stop.
struct CancellationError final : std::exception {
  [[nodiscard]] char const* what() const noexcept override {
    return "The operation was cancelled.";
  }
};

inline bool isCancellation(std::exception_ptr const& error) {
  try {
    std::rethrow_exception(error);
  } catch (CancellationError const&) {
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace vek
