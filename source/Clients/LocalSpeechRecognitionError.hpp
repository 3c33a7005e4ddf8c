// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

namespace vek {

/// Why the recogniser on this machine may not be used, in the words that the user reads.
class LocalSpeechRecognitionError : public std::exception {
 public:
  enum Case { authorizationDenied };

  LocalSpeechRecognitionError(Case which) : case_(which) {}

  [[nodiscard]] char const* what() const noexcept override {
    return "Authorization denied. \nOpen System Settings > Privacy & Security > Speech "
           "Recognition and enable it.";
  }

  bool operator==(LocalSpeechRecognitionError const& other) const { return case_ == other.case_; }

 private:
  Case case_;
};

}  // namespace vek
