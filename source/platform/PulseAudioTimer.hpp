// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

struct pa_context;
struct pa_time_event;
struct pa_threaded_mainloop;

namespace vek {

/// A timer of a sound server's main loop, used under the loop's lock only.
class PulseAudioTimer {
 public:
  PulseAudioTimer(pa_threaded_mainloop& loop, std::function<void()> action);
  PulseAudioTimer(PulseAudioTimer const&) = delete;
  PulseAudioTimer& operator=(PulseAudioTimer const&) = delete;
  ~PulseAudioTimer() { cancel(); }

  /// Runs the action once after `delay`; does nothing while it is already waiting.
  void start(pa_context& context, std::chrono::microseconds delay);
  void cancel();

 private:
  void fire();

  pa_threaded_mainloop& loop_;
  std::function<void()> action_;
  pa_time_event* event_ = nullptr;
};

}  // namespace vek
