// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <thread>

struct sd_bus;
struct sd_bus_message;

namespace vek::test {

/// The permission store of a session bus, with what it holds on the microphone by program; nothing
/// where `permissions` is empty.
class PermissionStore {
 public:
  using Permissions = std::map<std::string, std::string>;

  /// Throws std::runtime_error.
  PermissionStore(std::string const& busAddress, Permissions permissions);
  PermissionStore(PermissionStore const&) = delete;
  PermissionStore& operator=(PermissionStore const&) = delete;
  ~PermissionStore();

 private:
  int answer(sd_bus_message* call) const;

  Permissions permissions_;
  sd_bus* bus_ = nullptr;
  std::jthread thread_;
};

}  // namespace vek::test
