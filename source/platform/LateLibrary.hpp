// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

namespace vek {

/// A library of the system's that is read at the first use of one of its functions: it and all that
/// it brings along would hold up each start of a program, and most starts have no use for it.
class LateLibrary {
 public:
  constexpr explicit LateLibrary(char const* file) : file_(file) {}

  /// Without the library, or the symbol in it, the process ends, as one does that is linked to it.
  [[nodiscard]] void* symbol(char const* name);

 private:
  char const* file_;
  std::atomic<void*> handle_ = nullptr;
};

/// A function of such a library, called like the function itself.
template <class Function>
class LateFunction {
 public:
  constexpr LateFunction(LateLibrary& library, char const* name) : library_(library), name_(name) {}

  operator Function*() {  // NOLINT(google-explicit-constructor): so that it can be called
    auto* found = found_.load(std::memory_order_relaxed);
    if (!found) found_ = found = reinterpret_cast<Function*>(library_.symbol(name_));
    return found;
  }

 private:
  LateLibrary& library_;
  char const* name_;
  std::atomic<Function*> found_ = nullptr;
};

}  // namespace vek
