// SPDX-License-Identifier: MIT
#include "platform/DesktopNotifications.hpp"

#include <fmt/format.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <system_error>

#include "platform/Log.hpp"

namespace vek {
namespace {

using Message = std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)>;

constexpr auto service = "org.freedesktop.Notifications";
constexpr auto path = "/org/freedesktop/Notifications";
constexpr auto interface = "org.freedesktop.Notifications";
constexpr auto icon = "com.vek.app";
constexpr std::int32_t asLongAsTheDaemonLikes = -1;
constexpr std::uint64_t patienceInMicroseconds = 5'000'000;

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

Message newCall(sd_bus* bus, char const* destination, char const* method) {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(bus, &call, destination, path, interface, method);
  return {call, &sd_bus_message_unref};
}

/// Null when the call fails, which the log is told.
Message answer(sd_bus* bus, Message const& call) {
  sd_bus_error error{};
  sd_bus_message* reply = nullptr;
  int const result = sd_bus_call(bus, call.get(), patienceInMicroseconds, &error, &reply);
  if (result < 0) {
    auto const cause = error.message ? std::string(error.message)
                                     : std::error_code(-result, std::generic_category()).message();
    Logger("notifications").error("The desktop shows no notification: " + cause);
  }
  sd_bus_error_free(&error);
  return {reply, &sd_bus_message_unref};
}

Message newNotify(sd_bus* bus, MutableNotificationContent const& content) {
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
  sd_bus* opened = nullptr;
  if (int const result = sd_bus_open_user(&opened); result < 0) {
    auto const cause = std::error_code(-result, std::generic_category()).message();
    Logger("notifications").error("There is no session bus: " + cause);
    return nullptr;
  }
  bus_ = {opened, &sd_bus_flush_close_unref};
  return opened;
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
  sd_bus_error error{};
  sd_bus_call(bus, call.get(), patienceInMicroseconds, &error, nullptr);
  sd_bus_error_free(&error);
}

}  // namespace vek
