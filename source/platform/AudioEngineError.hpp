// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace vek {

/// Why an audio engine can't start. The text is for the log and for people.
class AudioEngineError : public std::exception {
 public:
  enum class Reason { noSoundServer, noMicrophone, accessDenied, timedOut, captureFailed };

  /// `detail`: what the platform says about it, if anything.
  explicit AudioEngineError(Reason reason, std::string_view detail = {});

  [[nodiscard]] Reason reason() const { return reason_; }
  [[nodiscard]] char const* what() const noexcept override { return text_.c_str(); }

 private:
  Reason reason_;
  std::string text_;
};

}  // namespace vek
