// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

namespace vek {

/// Why speech can't be captured or recognised, in the words that the user reads.
class RemoteSpeechRecognitionError : public std::exception {
 public:
  enum Case { programmerError, audioEngineError, authorizationDenied };

  RemoteSpeechRecognitionError(Case which) : case_(which) {}

  [[nodiscard]] char const* what() const noexcept override {
    switch (case_) {
      case programmerError:
        break;
      case audioEngineError:
        return "Audio engine error.";
      case authorizationDenied:
        return "Authorization denied. \nOpen System Settings > Privacy & Security > Microphone and "
               "enable it.";
    }
    return "Fatal error. Please report this to the developer.";
  }

  bool operator==(RemoteSpeechRecognitionError const& other) const { return case_ == other.case_; }

 private:
  Case case_;
};

}  // namespace vek
