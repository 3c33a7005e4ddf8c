// SPDX-License-Identifier: MIT
#include "platform/PulseAudioSession.hpp"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <utility>

#include "platform/PulseAudioTimer.hpp"

namespace vek {

namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;
using Reason = AudioEngineError::Reason;

/// A server that hangs must not hang the program.
constexpr auto answerTime = 5s;
/// Changes come in flocks: the default first, its format and its ports after it.
constexpr auto settleTime = 20ms;
constexpr auto retryInterval = 300ms;
constexpr auto timeWithoutSource = 10s;

/// No callback runs while the loop's lock is held.
class LoopLock {
 public:
  explicit LoopLock(pa_threaded_mainloop* loop) : loop_(loop) { pa_threaded_mainloop_lock(loop_); }
  LoopLock(LoopLock const&) = delete;
  LoopLock& operator=(LoopLock const&) = delete;
  ~LoopLock() { pa_threaded_mainloop_unlock(loop_); }

 private:
  pa_threaded_mainloop* loop_;
};

/// Flags of the C interface are enumerations of the single ones.
template <class Flags>
Flags combined(Flags one, Flags other) {
  auto const both = static_cast<unsigned>(one) | static_cast<unsigned>(other);
  return static_cast<Flags>(both);  // NOLINT(clang-analyzer-optin.core.EnumCastOutOfRange)
}

void forget(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

void disconnect(pa_context* context) {
  if (!context) return;
  pa_context_set_state_callback(context, nullptr, nullptr);
  pa_context_set_subscribe_callback(context, nullptr, nullptr);
  pa_context_disconnect(context);
  pa_context_unref(context);
}

Reason reason(int code) {
  switch (code) {
    case PA_ERR_ACCESS:
    case PA_ERR_AUTHKEY:
      return Reason::accessDenied;
    case PA_ERR_NOENTITY:
      return Reason::noMicrophone;
    case PA_ERR_TIMEOUT:
      return Reason::timedOut;
    case PA_ERR_CONNECTIONREFUSED:
    case PA_ERR_CONNECTIONTERMINATED:
    case PA_ERR_INVALIDSERVER:
      return Reason::noSoundServer;
    default:
      return Reason::captureFailed;
  }
}

PulseAudioSession::Source sourceFrom(pa_source_info const& info) {
  auto const& map = info.channel_map;
  auto const type = info.sample_spec.format == PA_SAMPLE_S16LE
                        ? AudioCommonFormat::pcmFormatInt16
                        : AudioCommonFormat::pcmFormatFloat32;
  return {.index = info.index,
          .name = info.name,
          .format = AudioFormat(type, info.sample_spec.rate, info.sample_spec.channels, true),
          .channelPositions = std::vector<int>(map.map, map.map + map.channels)};
}

bool isSameCapture(PulseAudioSession::Source const& a, PulseAudioSession::Source const& b) {
  return a.index == b.index && a.format.sampleRate() == b.format.sampleRate() &&
         a.format.channelCount() == b.format.channelCount();
}

}  // namespace

/// The server's callbacks. Each runs on the loop's thread, under its lock.
struct PulseAudioCallbacks {
  static PulseAudioSession& session(void* userdata) {
    return *static_cast<PulseAudioSession*>(userdata);
  }
  static void contextState(pa_context*, void* userdata) { session(userdata).contextDidChange(); }
  static void event(pa_context*, pa_subscription_event_type_t, std::uint32_t, void* userdata) {
    session(userdata).serverDidChange();
  }
  static void streamState(pa_stream*, void* userdata) { session(userdata).streamDidChange(); }
  static void readable(pa_stream*, std::size_t, void* userdata) {
    session(userdata).readAvailable();
  }

  static void sourceInfo(pa_context*, pa_source_info const* info, int end, void* userdata) {
    auto& self = session(userdata);
    if (end == 0) {
      // With no microphone servers offer what the speakers play instead.
      if (info->monitor_of_sink == PA_INVALID_INDEX) self.found_ = sourceFrom(*info);
      return;
    }
    forget(std::exchange(self.lookUp_, nullptr));
    auto const answer = std::exchange(self.answer_, nullptr);
    if (!answer) return;
    if (self.found_) {
      answer(*std::exchange(self.found_, std::nullopt));
    } else {
      answer(std::make_exception_ptr(end > 0 ? AudioEngineError(Reason::noMicrophone)
                                             : self.contextError()));
    }
  }
};

PulseAudioSession::PulseAudioSession(std::string server, Observer& observer)
    : server_(std::move(server)), observer_(observer), loop_(pa_threaded_mainloop_new()) {
  auto const timer = [this](std::function<void()> action) {
    return std::make_unique<PulseAudioTimer>(*loop_, std::move(action));
  };
  answerTimer_ = timer([this] { pa_threaded_mainloop_signal(loop_, 0); });
  settleTimer_ = timer([this] { evaluate(); });
  retryTimer_ = timer([this] { connectContext(); });
  deadline_ = timer([this] { announce(); });
  pa_threaded_mainloop_set_name(loop_, "vek-capture");
  pa_threaded_mainloop_start(loop_);
}

PulseAudioSession::~PulseAudioSession() {
  {
    LoopLock lock(loop_);
    for (auto* timer : {&answerTimer_, &settleTimer_, &retryTimer_, &deadline_}) timer->reset();
    dropStream();
    disconnect(context_);
    forget(lookUp_);
  }
  pa_threaded_mainloop_stop(loop_);
  pa_threaded_mainloop_free(loop_);
}

void PulseAudioSession::open() {
  LoopLock lock(loop_);
  connectContext();
  waitUntil(
      [this] { return isConnected() || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)); });
  if (!isConnected()) throw contextError();

  source_ = currentSource().value();
}

void PulseAudioSession::start(std::size_t fragmentFrames) {
  LoopLock lock(loop_);
  if (phase_ != Phase::opening) return;
  connectStream(fragmentFrames);
  waitUntil([this] { return pa_stream_get_state(stream_) != PA_STREAM_CREATING; });
  if (pa_stream_get_state(stream_) != PA_STREAM_READY) {
    auto const error = contextError();
    auto const now = currentSource();
    if (now && isSameCapture(now.value(), *source_)) throw error;
    lose();
  } else {
    phase_ = Phase::capturing;
  }
  // The default may have changed since it was looked up, when nobody listened.
  evaluate();
}

bool PulseAudioSession::isCapturing() const {
  LoopLock lock(loop_);
  return phase_ == Phase::capturing;
}

void PulseAudioSession::connectContext() {
  disconnect(context_);
  // Nobody waits for the answer of a connection that is gone.
  forget(std::exchange(lookUp_, nullptr));
  context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "VEK");
  pa_context_set_state_callback(context_, &PulseAudioCallbacks::contextState, this);
  pa_context_set_subscribe_callback(context_, &PulseAudioCallbacks::event, this);
  auto const* const address = server_.empty() ? nullptr : server_.c_str();
  // A failure may be told by the callback, by the result or by both.
  if (pa_context_connect(context_, address, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
    contextDidChange();
  }
}

bool PulseAudioSession::isConnected() const {
  return context_ && pa_context_get_state(context_) == PA_CONTEXT_READY;
}

AudioEngineError PulseAudioSession::contextError() const {
  auto const code = pa_context_errno(context_);
  // A connection that is still being made has no error.
  if (code == PA_OK) return AudioEngineError(Reason::timedOut);
  // Without a server's file there is "no entity" too.
  auto const why = isConnected() || code == PA_ERR_ACCESS || code == PA_ERR_AUTHKEY
                       ? reason(code)
                       : Reason::noSoundServer;
  return AudioEngineError(why, pa_strerror(code));
}

void PulseAudioSession::waitUntil(std::function<bool()> const& isDone) {
  auto const end = std::chrono::steady_clock::now() + answerTime;
  answerTimer_->start(*context_, answerTime);
  while (!isDone() && std::chrono::steady_clock::now() < end) pa_threaded_mainloop_wait(loop_);
  answerTimer_->cancel();
}

Result<PulseAudioSession::Source> PulseAudioSession::currentSource() {
  std::optional<Result<Source>> found;
  if (isConnected()) {
    lookUpSource([&](Result<Source> result) {
      found = std::move(result);
      pa_threaded_mainloop_signal(loop_, 0);
    });
    waitUntil([&] { return found || !isConnected(); });
    answer_ = nullptr;
  }
  return found ? *std::move(found) : std::make_exception_ptr(contextError());
}

void PulseAudioSession::lookUpSource(Answer answer) {
  if (lookUp_) pa_operation_cancel(lookUp_);
  forget(lookUp_);
  found_ = std::nullopt;
  answer_ = std::move(answer);
  lookUp_ = pa_context_get_source_info_by_name(context_, "@DEFAULT_SOURCE@",
                                               &PulseAudioCallbacks::sourceInfo, this);
}

void PulseAudioSession::connectStream(std::size_t fragmentFrames) {
  auto const channels = static_cast<std::uint8_t>(source_->format.channelCount());
  pa_sample_spec const spec{.format = PA_SAMPLE_S16LE,
                            .rate = static_cast<std::uint32_t>(source_->format.sampleRate()),
                            .channels = channels};
  pa_channel_map map;
  pa_channel_map_init(&map);
  map.channels = channels;
  std::ranges::transform(source_->channelPositions, map.map,
                         [](int position) { return static_cast<pa_channel_position_t>(position); });

  stream_ = pa_stream_new(context_, "Recording", &spec, &map);
  if (!stream_) throw contextError();
  pa_stream_set_state_callback(stream_, &PulseAudioCallbacks::streamState, this);
  pa_stream_set_read_callback(stream_, &PulseAudioCallbacks::readable, this);
  constexpr auto serversChoice = static_cast<std::uint32_t>(-1);
  // Without a fragment size data would come in blocks of 2 seconds.
  pa_buffer_attr const attributes{
      .maxlength = serversChoice,
      .tlength = serversChoice,
      .prebuf = serversChoice,
      .minreq = serversChoice,
      .fragsize = static_cast<std::uint32_t>(fragmentFrames * pa_frame_size(&spec))};
  // By name, and never moved: a moved stream goes on with another device, resampled in silence.
  auto const flags = combined(PA_STREAM_ADJUST_LATENCY, PA_STREAM_DONT_MOVE);
  if (pa_stream_connect_record(stream_, source_->name.c_str(), &attributes, flags) < 0) {
    throw contextError();
  }
}

void PulseAudioSession::dropStream() {
  auto* stream = std::exchange(stream_, nullptr);
  if (!stream) return;
  pa_stream_set_state_callback(stream, nullptr, nullptr);
  pa_stream_set_read_callback(stream, nullptr, nullptr);
  pa_stream_disconnect(stream);
  pa_stream_unref(stream);
}

void PulseAudioSession::contextDidChange() {
  pa_threaded_mainloop_signal(loop_, 0);
  auto const state = pa_context_get_state(context_);
  if (state == PA_CONTEXT_READY) {
    auto const mask = combined(PA_SUBSCRIPTION_MASK_SERVER, PA_SUBSCRIPTION_MASK_SOURCE);
    forget(pa_context_subscribe(context_, mask, nullptr, nullptr));
    evaluate();
  } else if (!PA_CONTEXT_IS_GOOD(state)) {
    if (phase_ == Phase::capturing) {
      lose();
    } else if (phase_ == Phase::lost) {
      retryLater();
    }
  }
}

void PulseAudioSession::streamDidChange() {
  pa_threaded_mainloop_signal(loop_, 0);
  if (phase_ == Phase::capturing && !PA_STREAM_IS_GOOD(pa_stream_get_state(stream_))) lose();
}

void PulseAudioSession::serverDidChange() {
  if (phase_ != Phase::opening) settleTimer_->start(*context_, settleTime);
}

void PulseAudioSession::readAvailable() {
  void const* data = nullptr;
  std::size_t size = 0;
  while (pa_stream_peek(stream_, &data, &size) >= 0 && size > 0) {
    observer_.didCapture(static_cast<std::byte const*>(data), size / sizeof(std::int16_t));
    pa_stream_drop(stream_);
  }
}

void PulseAudioSession::evaluate() {
  if (phase_ == Phase::opening || phase_ == Phase::announced || !isConnected()) return;
  lookUpSource([this](Result<Source> found) { didFindSource(std::move(found)); });
}

void PulseAudioSession::didFindSource(Result<Source> found) {
  if (phase_ == Phase::capturing) {
    if (found && isSameCapture(found.value(), *source_)) return;
    lose();
  }
  if (phase_ == Phase::lost && found) announce();
}

void PulseAudioSession::lose() {
  phase_ = Phase::lost;
  dropStream();
  deadline_->start(*context_, timeWithoutSource);
  if (isConnected()) {
    settleTimer_->start(*context_, settleTime);
  } else {
    retryLater();
  }
  observer_.didLoseSource();
}

void PulseAudioSession::retryLater() {
  retryTimer_->start(*context_, retryInterval);
}

void PulseAudioSession::announce() {
  phase_ = Phase::announced;
  for (auto* timer : {&settleTimer_, &retryTimer_, &deadline_}) (*timer)->cancel();
  observer_.didChange();
}

}  // namespace vek
