// SPDX-License-Identifier: MIT
#include <pulse/pulseaudio.h>

#include <memory>

#include "platform/MicrophoneRules.hpp"

namespace vek {

namespace {

using Clock = std::chrono::steady_clock;

struct ContextEnd {
  void operator()(pa_context* context) const {
    pa_context_disconnect(context);
    pa_context_unref(context);
  }
};

/// Runs the loop once, for at most the time that is left. False when there is nothing to wait for
/// any more.
bool iterate(pa_mainloop* loop, Clock::time_point deadline) {
  auto const left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
  return left.count() > 0 && pa_mainloop_prepare(loop, static_cast<int>(left.count())) >= 0 &&
         pa_mainloop_poll(loop) >= 0 && pa_mainloop_dispatch(loop) >= 0;
}

}  // namespace

bool isMicrophoneDeniedBySoundServer(std::string const& server,
                                     std::chrono::milliseconds patience) {
  std::unique_ptr<pa_mainloop, decltype(&pa_mainloop_free)> const loop(pa_mainloop_new(),
                                                                       &pa_mainloop_free);
  std::unique_ptr<pa_context, ContextEnd> const context(
      pa_context_new(pa_mainloop_get_api(loop.get()), "VEK"));
  auto const deadline = Clock::now() + patience;
  pa_context_connect(context.get(), server.empty() ? nullptr : server.c_str(),
                     PA_CONTEXT_NOAUTOSPAWN, nullptr);
  auto const isConnecting = [&] {
    auto const state = pa_context_get_state(context.get());
    return PA_CONTEXT_IS_GOOD(state) && state != PA_CONTEXT_READY;
  };
  while (isConnecting() && iterate(loop.get(), deadline)) continue;
  return pa_context_get_state(context.get()) == PA_CONTEXT_FAILED &&
         pa_context_errno(context.get()) == PA_ERR_ACCESS;
}

}  // namespace vek
