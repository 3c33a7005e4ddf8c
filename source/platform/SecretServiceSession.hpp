// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/KeychainStore.hpp"

struct _GCancellable;
struct _GList;
struct _SecretItem;
struct _SecretService;

namespace vek {

/// What one operation asks of the Secret Service, with a key of its own for what goes over the bus:
/// a service that was restarted is never spoken to with an old one. Operations throw
/// KeychainFailure, and end early when `cancellable` says so.
class SecretServiceSession {
 public:
  /// Throws errSecNotAvailable when no service runs.
  explicit SecretServiceSession(_GCancellable* cancellable);
  SecretServiceSession(SecretServiceSession const&) = delete;
  SecretServiceSession& operator=(SecretServiceSession const&) = delete;
  ~SecretServiceSession();

  void add(KeychainStore::Key const& key, std::string const& bytes);
  void replace(KeychainStore::Key const& key, std::string const& bytes);
  std::string read(KeychainStore::Key const& key);
  void remove(std::string const& service, std::optional<std::string> const& account);
  std::vector<std::string> list(std::string const& service);

 private:
  class Items;

  Items find(std::string const& service, std::optional<std::string> const& account);
  void unlock(_SecretItem* item);
  void store(KeychainStore::Key const& key, std::string const& bytes, char const* collection);

  _GCancellable* cancellable_;
  _SecretService* service_ = nullptr;
};

}  // namespace vek
