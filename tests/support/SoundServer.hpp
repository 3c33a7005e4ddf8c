// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// A sound server in a temporary folder, without any device until the test loads one. It ends with
/// this object, and with the process.
class SoundServer {
 public:
  enum class Kind : std::uint8_t { pulseAudio, pipeWire };

  /// Throws std::runtime_error when it does not come up.
  explicit SoundServer(Kind kind = Kind::pulseAudio);
  SoundServer(SoundServer const&) = delete;
  SoundServer& operator=(SoundServer const&) = delete;
  ~SoundServer() { kill(); }

  void start();
  /// Ends it like a crash; its devices are gone for good.
  void kill();

  /// Where it listens, in the form that clients take.
  [[nodiscard]] std::string address() const { return "unix:" + socket().string(); }
  [[nodiscard]] std::filesystem::path path(std::string_view name) const { return folder_ / name; }

  /// Runs pactl and returns what it prints. Throws std::runtime_error when it fails.
  std::string pactl(std::string const& arguments) const;
  /// Loads a module and returns its number.
  std::string load(std::string const& module) const { return pactl("load-module " + module); }
  /// A microphone that gives what is written to the file `path(name)`; returns its module.
  std::string loadPipeMicrophone(std::string const& name, int rate, int channels) const;
  void unload(std::string const& module) const { pactl("unload-module " + module); }

 private:
  [[nodiscard]] bool isReady() const;
  [[nodiscard]] std::filesystem::path socket() const { return folder_ / "pulse" / "native"; }

  Kind kind_;
  TemporaryFolder folder_;
  pid_t pid_ = -1;
  int lifeline_ = -1;
};

/// The end into which a test speaks for a pipe microphone.
class MicrophonePipe {
 public:
  explicit MicrophonePipe(std::filesystem::path const& path);
  MicrophonePipe(MicrophonePipe const&) = delete;
  MicrophonePipe& operator=(MicrophonePipe const&) = delete;
  ~MicrophonePipe();

  /// Writes interleaved samples; waits while the server has not taken them.
  void speak(std::span<std::int16_t const> samples) const;
  /// Writes them, which are few, if the pipe has room for all. Whether it had.
  bool offer(std::span<std::int16_t const> samples) const;

 private:
  int file_;
};

}  // namespace vek::test
