// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string_view>

namespace vek {

/// Why the recogniser on this machine can't start.
class RecorderError : public std::exception {
 public:
  enum Case { noAuthorization, recognizerFailure, notAvailable, audioEngineFailure };

  RecorderError(Case which) : case_(which) {}

  /// The name of the case.
  [[nodiscard]] std::string_view rawValue() const;
  [[nodiscard]] char const* what() const noexcept override;

  bool operator==(RecorderError const& other) const { return case_ == other.case_; }

 private:
  Case case_;
};

}  // namespace vek
