// SPDX-License-Identifier: MIT
#include "platform/DesktopNotifications.hpp"

#include <systemd/sd-bus.h>

#include <chrono>

#include "platform/Log.hpp"

namespace vek {
namespace {

constexpr auto service = "org.freedesktop.Notifications";
constexpr auto path = "/org/freedesktop/Notifications";
constexpr auto interface = "org.freedesktop.Notifications";
constexpr auto icon = "com.vek.app";
constexpr std::int32_t asLongAsTheDaemonLikes = -1;
constexpr std::chrono::seconds patience(5);

enum class Urgency : std::uint8_t { low, normal, critical };

Urgency urgency(UserNotificationInterruptionLevel level) {
  switch (level) {
    case UserNotificationInterruptionLevel::passive:
      return Urgency::low;
    case UserNotificationInterruptionLevel::critical:
      return Urgency::critical;
    default:
      return Urgency::normal;
  }
}

/// Bodies are a kind of markup.
std::string escaped(std::string const& text) {
  std::string escaped;
  for (char const each : text) {
    switch (each) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += each;
    }
  }
  return escaped;
}

SessionBusMessage newCall(sd_bus* bus, char const* destination, char const* method) {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(bus, &call, destination, path, interface, method);
  return SessionBusMessage(call);
}

/// Null when the call fails, which the log is told.
SessionBusMessage answer(sd_bus* bus, SessionBusMessage const& call) {
  auto reply = callWithin(bus, call.get(), patience);
  auto const* error = reply ? sd_bus_message_get_error(reply.get()) : nullptr;
  if (reply && !error) return reply;
  char const* cause = error ? error->message : "it does not answer";
  Logger("notifications")
      .error(std::string("The desktop shows no notification: ") + (cause ? cause : error->name));
  return nullptr;
}

SessionBusMessage newNotify(sd_bus* bus, MutableNotificationContent const& content) {
  auto call = newCall(bus, service, "Notify");
  sd_bus_message_append(call.get(), "susss", "VEK", std::uint32_t{0}, icon, content.title.c_str(),
                        escaped(content.body).c_str());
  sd_bus_message_append(call.get(), "as", 0);
  sd_bus_message_append(call.get(), "a{sv}", 2, "urgency", "y",
                        static_cast<int>(urgency(content.interruptionLevel)), "desktop-entry", "s",
                        icon);
  sd_bus_message_append(call.get(), "i", asLongAsTheDaemonLikes);
  return call;
}

}  // namespace

sd_bus* DesktopNotifications::bus() {
  // What the daemon tells of its own accord, such as that a notification has closed.
  int processed = 1;
  while (bus_ && processed > 0) processed = sd_bus_process(bus_.get(), nullptr);
  if (bus_ && sd_bus_is_open(bus_.get()) > 0) return bus_.get();
  bus_ = openSessionBus();
  if (!bus_) Logger("notifications").error("There is no session bus.");
  return bus_.get();
}

void DesktopNotifications::show(NotificationRequest const& request) {
  withdraw(request.identifier);
  auto* const bus = this->bus();
  if (!bus) return;
  auto const reply = answer(bus, newNotify(bus, request.content));
  std::uint32_t number = 0;
  if (!reply || sd_bus_message_read(reply.get(), "u", &number) <= 0) return;
  if (char const* daemon = sd_bus_message_get_sender(reply.get())) {
    shown_[request.identifier] = {daemon, number};
  }
}

void DesktopNotifications::withdraw(std::string const& identifier) {
  auto const found = shown_.find(identifier);
  if (found == shown_.end()) return;
  auto const shown = found->second;
  shown_.erase(found);
  auto* const bus = this->bus();
  if (!bus) return;
  auto const call = newCall(bus, shown.daemon.c_str(), "CloseNotification");
  sd_bus_message_append(call.get(), "u", shown.number);
  // It may be gone already, with its daemon too, and is then as it should be.
  static_cast<void>(callWithin(bus, call.get(), patience));
}

}  // namespace vek
