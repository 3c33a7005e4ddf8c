// SPDX-License-Identifier: MIT
#pragma once

#include "runtime/UniqueFunction.hpp"

namespace vek {

/// Somewhere to run work. Work posted by one thread runs in the order in which it was posted.
class Executor {
 public:
  Executor() = default;
  Executor(Executor const&) = delete;
  Executor& operator=(Executor const&) = delete;
  virtual ~Executor() = default;

  /// Runs `work` later, never inside this call. Any thread may post.
  virtual void post(UniqueFunction<void()> work) = 0;
};

}  // namespace vek
