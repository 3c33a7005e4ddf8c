// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/AudioEngineError.hpp"
#include "platform/AudioPCMBuffer.hpp"
#include "runtime/Result.hpp"

struct pa_context;
struct pa_operation;
struct pa_stream;
struct pa_threaded_mainloop;

namespace vek {

class PulseAudioTimer;

/// One capture from the default source of a sound server, from the first look at the source to its
/// loss. Opened, started and destroyed on one thread; the observer is called on the session's own.
class PulseAudioSession {
 public:
  struct Source {
    std::uint32_t index;
    std::string name;
    /// The device's own.
    AudioFormat format;
    std::vector<int> channelPositions;
  };

  class Observer {
   public:
    /// Interleaved 16-bit samples; a null pointer stands for a hole, to be filled with zeros.
    virtual void didCapture(std::byte const* bytes, std::size_t sampleCount) = 0;
    /// The source is gone or no longer the default, and nothing more is captured.
    virtual void didLoseSource() = 0;
    /// After a loss, once: another source is there, or none has come for 10 seconds.
    virtual void didChange() = 0;

   protected:
    ~Observer() = default;
  };

  /// `server` is an address, or empty for the user's own server.
  PulseAudioSession(std::string server, Observer& observer);
  PulseAudioSession(PulseAudioSession const&) = delete;
  PulseAudioSession& operator=(PulseAudioSession const&) = delete;
  ~PulseAudioSession();

  /// Connects and finds the default source. Throws `AudioEngineError`.
  void open();
  /// What `open` has found.
  [[nodiscard]] Source const& source() const { return *source_; }
  /// Captures from that source in fragments of about so many frames. Throws `AudioEngineError`,
  /// but a source that has gone since `open` is a loss as it is later.
  void start(std::size_t fragmentFrames);
  [[nodiscard]] bool isCapturing() const;

 private:
  enum class Phase : std::uint8_t { opening, capturing, lost, announced };
  using Answer = std::function<void(Result<Source>)>;
  friend struct PulseAudioCallbacks;

  void connectContext();
  [[nodiscard]] bool isConnected() const;
  /// Waits for what `lookUpSource` tells.
  Result<Source> currentSource();
  void lookUpSource(Answer answer);
  void connectStream(std::size_t fragmentFrames);
  void dropStream();
  void waitUntil(std::function<bool()> const& isDone);
  [[nodiscard]] AudioEngineError contextError() const;

  void contextDidChange();
  void streamDidChange();
  void serverDidChange();
  void didFindSource(Result<Source> found);
  void readAvailable();

  void evaluate();
  void lose();
  void retryLater();
  void announce();

  std::string server_;
  Observer& observer_;
  pa_threaded_mainloop* loop_;
  pa_context* context_ = nullptr;
  pa_stream* stream_ = nullptr;
  pa_operation* lookUp_ = nullptr;
  std::optional<Source> found_;
  Answer answer_;
  std::optional<Source> source_;
  Phase phase_ = Phase::opening;

  std::unique_ptr<PulseAudioTimer> answerTimer_;
  std::unique_ptr<PulseAudioTimer> settleTimer_;
  std::unique_ptr<PulseAudioTimer> retryTimer_;
  std::unique_ptr<PulseAudioTimer> deadline_;
};

}  // namespace vek
