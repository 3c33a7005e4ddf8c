// SPDX-License-Identifier: MIT
#pragma once

#include "runtime/CallbackOperation.hpp"

namespace vek {

/// A callback operation that is waited for even when the awaiting work is told to stop.
template <class T, class Start>
Task<T> uncancelled(Start start) {
  auto ignoreStop = [](Environment& environment) { environment.stopToken = {}; };
  auto operation = [](Start begin) -> Task<T> {
    co_return co_await callbackOperation<T>(std::move(begin));
  };
  co_return co_await InChangedEnvironment<T, decltype(ignoreStop)>{operation(std::move(start)),
                                                                   ignoreStop};
}

}  // namespace vek
