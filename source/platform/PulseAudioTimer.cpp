// SPDX-License-Identifier: MIT
#include "platform/PulseAudioTimer.hpp"

#include <pulse/pulseaudio.h>

#include <utility>

namespace vek {

PulseAudioTimer::PulseAudioTimer(pa_threaded_mainloop& loop, std::function<void()> action)
    : loop_(loop), action_(std::move(action)) {}

void PulseAudioTimer::start(pa_context& context, std::chrono::microseconds delay) {
  if (event_) return;
  event_ = pa_context_rttime_new(
      &context, pa_rtclock_now() + static_cast<pa_usec_t>(delay.count()),
      [](pa_mainloop_api*, pa_time_event*, timeval const*, void* timer) {
        static_cast<PulseAudioTimer*>(timer)->fire();
      },
      this);
}

void PulseAudioTimer::cancel() {
  if (auto* event = std::exchange(event_, nullptr)) {
    pa_threaded_mainloop_get_api(&loop_)->time_free(event);
  }
}

void PulseAudioTimer::fire() {
  cancel();
  action_();
}

}  // namespace vek
