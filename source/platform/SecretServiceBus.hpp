// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

struct _GCancellable;
struct _GDBusConnection;

namespace vek {

/// The session bus, watched for what the Secret Service says of changes. Everything is called on
/// one GLibThread.
class SecretServiceBus {
 public:
  /// `onChange` runs when a collection or an item was changed by anybody, when a service comes, and
  /// when the bus goes.
  explicit SecretServiceBus(std::function<void()> onChange) : onChange_(std::move(onChange)) {}
  SecretServiceBus(SecretServiceBus const&) = delete;
  SecretServiceBus& operator=(SecretServiceBus const&) = delete;
  /// To be called after disconnect.
  ~SecretServiceBus() = default;

  /// Connects unless that was done. Throws KeychainFailure: errSecNotAvailable without a bus.
  void connect(_GCancellable* cancellable);
  void disconnect();

 private:
  void subscribe();

  std::function<void()> onChange_;
  _GDBusConnection* connection_ = nullptr;
  std::vector<unsigned> subscriptions_;
};

}  // namespace vek
