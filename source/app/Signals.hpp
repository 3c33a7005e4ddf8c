// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <thread>

namespace vek {

/// Hands SIGINT, SIGTERM and SIGHUP to the main queue. Made in `main` before any other thread,
/// since the signals are blocked for all threads that start after it.
class Signals {
 public:
  Signals();
  Signals(Signals const&) = delete;
  Signals& operator=(Signals const&) = delete;
  ~Signals();

  /// Called on the main thread with how many came so far. A third one ends the process at once.
  void onSignal(std::function<void(int count)> handler) { handler_ = std::move(handler); }

 private:
  std::function<void(int)> handler_;
  std::thread thread_;
};

}  // namespace vek
