// SPDX-License-Identifier: MIT
#include <systemd/sd-bus.h>

#include <cerrno>
#include <map>
#include <memory>
#include <vector>

#include "platform/MicrophoneRules.hpp"

namespace vek {

namespace {

using Clock = std::chrono::steady_clock;
using Bus = std::unique_ptr<sd_bus, decltype(&sd_bus_close_unref)>;
using Message = std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)>;
/// Words such as "yes" and "no", by program.
using Permissions = std::map<std::string, std::vector<std::string>>;

constexpr auto thisProgram = "com.vek.app";
constexpr auto programsInNoSandbox = "";

int keepReply(sd_bus_message* reply, void* place, sd_bus_error*) {
  static_cast<Message*>(place)->reset(sd_bus_message_ref(reply));
  return 0;
}

/// The answer of the store; null when none comes in time.
Message lookUpMicrophone(sd_bus* bus, std::chrono::milliseconds patience) {
  Message reply(nullptr, &sd_bus_message_unref);
  int const sent = sd_bus_call_method_async(
      bus, nullptr, "org.freedesktop.impl.portal.PermissionStore",
      "/org/freedesktop/impl/portal/PermissionStore", "org.freedesktop.impl.portal.PermissionStore",
      "Lookup", &keepReply, &reply, "ss", "devices", "microphone");
  if (sent < 0) return reply;
  // A call that waits by itself would not count the time that a bus takes to let us in.
  auto const deadline = Clock::now() + patience;
  while (!reply) {
    int const processed = sd_bus_process(bus, nullptr);
    if (processed < 0) break;
    if (processed > 0) continue;
    auto const left =
        std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
    if (left.count() <= 0) break;
    int const waited = sd_bus_wait(bus, static_cast<std::uint64_t>(left.count()));
    if (waited < 0 && waited != -EINTR) break;
  }
  return reply;
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
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return false;
  // Not flushed at its end: that would wait for a bus that does not answer.
  Bus const bus(opened, &sd_bus_close_unref);
  auto const reply = lookUpMicrophone(bus.get(), patience);
  if (!reply || sd_bus_message_is_method_error(reply.get(), nullptr) > 0) return false;
  auto const permissions = readPermissions(reply.get());
  auto found = permissions.find(thisProgram);
  if (found == permissions.end()) found = permissions.find(programsInNoSandbox);
  return found != permissions.end() && found->second == std::vector<std::string>{"no"};
}

}  // namespace vek
