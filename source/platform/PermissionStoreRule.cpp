// SPDX-License-Identifier: MIT
#include <systemd/sd-bus.h>

#include <map>
#include <vector>

#include "platform/MicrophoneRules.hpp"
#include "platform/SessionBusCall.hpp"

namespace vek {

namespace {

/// Words such as "yes" and "no", by program.
using Permissions = std::map<std::string, std::vector<std::string>>;

constexpr auto thisProgram = "com.vek.app";
constexpr auto programsInNoSandbox = "";

/// The answer of the store; null when none comes in time.
SessionBusMessage lookUpMicrophone(sd_bus* bus, std::chrono::milliseconds patience) {
  sd_bus_message* made = nullptr;
  int const code =
      sd_bus_message_new_method_call(bus, &made, "org.freedesktop.impl.portal.PermissionStore",
                                     "/org/freedesktop/impl/portal/PermissionStore",
                                     "org.freedesktop.impl.portal.PermissionStore", "Lookup");
  SessionBusMessage const call(code < 0 ? nullptr : made);
  if (!call || sd_bus_message_append(call.get(), "ss", "devices", "microphone") < 0) return nullptr;
  return callWithin(bus, call.get(), patience);
}

std::vector<std::string> readWords(sd_bus_message* message) {
  std::vector<std::string> words;
  sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "s");
  char const* word = nullptr;
  while (sd_bus_message_read(message, "s", &word) > 0) words.emplace_back(word);
  sd_bus_message_exit_container(message);
  return words;
}

Permissions readPermissions(sd_bus_message* reply) {
  Permissions permissions;
  if (sd_bus_message_enter_container(reply, SD_BUS_TYPE_ARRAY, "{sas}") <= 0) return permissions;
  while (sd_bus_message_enter_container(reply, SD_BUS_TYPE_DICT_ENTRY, "sas") > 0) {
    char const* program = nullptr;
    if (sd_bus_message_read(reply, "s", &program) <= 0) break;
    permissions[program] = readWords(reply);
    sd_bus_message_exit_container(reply);
  }
  return permissions;
}

}  // namespace

bool isMicrophoneDeniedByPermissionStore(std::chrono::milliseconds patience) {
  auto const bus = openSessionBus();
  if (!bus) return false;
  auto const reply = lookUpMicrophone(bus.get(), patience);
  if (!reply || sd_bus_message_is_method_error(reply.get(), nullptr) > 0) return false;
  auto const permissions = readPermissions(reply.get());
  auto found = permissions.find(thisProgram);
  if (found == permissions.end()) found = permissions.find(programsInNoSandbox);
  return found != permissions.end() && found->second == std::vector<std::string>{"no"};
}

}  // namespace vek
