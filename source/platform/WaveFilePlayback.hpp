// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>

namespace vek {

/// How far an engine that plays a file has come. Shared by the engine and by whoever wants to know
/// when all has been heard; any thread may ask. Times are those of the audio. What is played has
/// been taken by the consumer.
class WaveFilePlayback {
 public:
  /// The length of the file; 0 before the engine has started.
  [[nodiscard]] std::chrono::microseconds duration() const { return duration_; }
  /// How much of the file has been played.
  [[nodiscard]] std::chrono::microseconds played() const { return played_; }
  [[nodiscard]] bool hasPlayedFile() const { return hasPlayedFile_; }
  /// How much silence has been played after the file.
  [[nodiscard]] std::chrono::microseconds silencePlayed() const { return silencePlayed_; }

  // What the engine tells.
  void begin(std::chrono::microseconds duration) {
    hasPlayedFile_ = false;
    played_ = silencePlayed_ = std::chrono::microseconds(0);
    duration_ = duration;
  }
  void setPlayed(std::chrono::microseconds time) { played_ = time; }
  void setHasPlayedFile() { hasPlayedFile_ = true; }
  void setSilencePlayed(std::chrono::microseconds time) { silencePlayed_ = time; }

 private:
  std::atomic<std::chrono::microseconds> duration_{};
  std::atomic<std::chrono::microseconds> played_{};
  std::atomic<std::chrono::microseconds> silencePlayed_{};
  std::atomic<bool> hasPlayedFile_ = false;
};

}  // namespace vek
