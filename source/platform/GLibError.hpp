// SPDX-License-Identifier: MIT
#pragma once

struct _GError;

namespace vek {

/// What a function of GLib has to say about its failure.
class GLibError {
 public:
  GLibError() = default;
  GLibError(GLibError const&) = delete;
  GLibError& operator=(GLibError const&) = delete;
  ~GLibError();

  /// The place where such a function puts its error.
  _GError** place() { return &error_; }

  /// Throws the KeychainFailure that the error amounts to, if there is one: errSecNotAvailable when
  /// no service runs. What else has failed is told to the log.
  void throwAsKeychainFailure() const;

 private:
  _GError* error_ = nullptr;
};

}  // namespace vek
