// SPDX-License-Identifier: MIT
#include "platform/RemoteApplication.hpp"

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>

#include "platform/SessionBusCall.hpp"

namespace vek {

namespace {

/// A program that starts first takes its time.
constexpr std::chrono::seconds patience(10);

/// What the desktop gave this process so that a window may come forward on its behalf.
int appendPlatformData(sd_bus_message* call) {
  if (int const code = sd_bus_message_open_container(call, 'a', "{sv}"); code < 0) return code;
  for (auto const& [key, variable] : {std::pair("activation-token", "XDG_ACTIVATION_TOKEN"),
                                      std::pair("desktop-startup-id", "DESKTOP_STARTUP_ID")}) {
    char const* value = std::getenv(variable);
    if (!value || !*value) continue;
    if (int const code = sd_bus_message_append(call, "{sv}", key, "s", value); code < 0)
      return code;
  }
  return sd_bus_message_close_container(call);
}

}  // namespace

bool RemoteApplication::request(char const* method, Arguments const& append) const {
  auto const bus = openSessionBus();
  if (!bus) return false;
  sd_bus_message* made = nullptr;
  int const code = sd_bus_message_new_method_call(bus.get(), &made, "com.vek.app", "/com/vek/app",
                                                  "org.freedesktop.Application", method);
  SessionBusMessage const call(code < 0 ? nullptr : made);
  if (!call || sd_bus_message_set_auto_start(call.get(), start_ == Start::ifNeeded) < 0 ||
      append(call.get()) < 0 || appendPlatformData(call.get()) < 0) {
    throw std::runtime_error("VEK could not be asked.");
  }
  auto const reply = callWithin(bus.get(), call.get(), patience);
  if (!reply) throw std::runtime_error("VEK is running and does not answer.");
  auto const* error = sd_bus_message_get_error(reply.get());
  if (!error) return true;
  for (auto const* name : {SD_BUS_ERROR_SERVICE_UNKNOWN, SD_BUS_ERROR_NAME_HAS_NO_OWNER}) {
    if (sd_bus_error_has_name(error, name) > 0) return false;
  }
  throw std::runtime_error(error->message ? error->message : error->name);
}

bool RemoteApplication::activate() const {
  return request("Activate", [](sd_bus_message*) { return 0; });
}

bool RemoteApplication::open(std::string const& url) const {
  return request("Open", [&url](sd_bus_message* call) {
    return sd_bus_message_append(call, "as", 1, url.c_str());
  });
}

bool RemoteApplication::activateAction(std::string const& name) const {
  return request("ActivateAction", [&name](sd_bus_message* call) {
    return sd_bus_message_append(call, "sav", name.c_str(), 0);
  });
}

}  // namespace vek
