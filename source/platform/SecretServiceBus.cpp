// SPDX-License-Identifier: MIT
#include "platform/SecretServiceBus.hpp"

#include <gio/gio.h>

#include <utility>

#include "platform/GLibError.hpp"
#include "platform/KeychainStatus.hpp"
#include "platform/Log.hpp"

namespace vek {
namespace {

void changed(GDBusConnection*, char const*, char const*, char const*, char const*, GVariant*,
             gpointer onChange) {
  (*static_cast<std::function<void()>*>(onChange))();
}

/// While nobody owns the name nothing can change; what is known then stays true.
void ownerChanged(GDBusConnection*, char const*, char const*, char const*, char const*,
                  GVariant* parameters, gpointer onChange) {
  char const* newOwner = "";
  g_variant_get(parameters, "(&s&s&s)", nullptr, nullptr, &newOwner);
  if (*newOwner) (*static_cast<std::function<void()>*>(onChange))();
}

void closed(GDBusConnection*, gboolean, GError*, gpointer onChange) {
  (*static_cast<std::function<void()>*>(onChange))();
}

}  // namespace

void SecretServiceBus::connect(GCancellable* cancellable) {
  if (connection_ && !g_dbus_connection_is_closed(connection_)) return;
  disconnect();
  GLibError error;
  connection_ = g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, error.place());
  if (!connection_) throw KeychainFailure{errSecNotAvailable};
  // The end of the bus is not the end of this program.
  g_dbus_connection_set_exit_on_close(connection_, FALSE);
  subscribe();
}

void SecretServiceBus::subscribe() {
  g_signal_connect(connection_, "closed", G_CALLBACK(closed), &onChange_);
  // The bus hears of a subscription before all that is sent afterwards.
  auto const to = [this](char const* interface, char const* member, char const* argument,
                         GDBusSignalCallback callback) {
    subscriptions_.push_back(g_dbus_connection_signal_subscribe(
        connection_, nullptr, interface, member, nullptr, argument, G_DBUS_SIGNAL_FLAGS_NONE,
        callback, &onChange_, nullptr));
  };
  to("org.freedesktop.Secret.Service", nullptr, nullptr, changed);
  to("org.freedesktop.Secret.Collection", nullptr, nullptr, changed);
  to("org.freedesktop.DBus", "NameOwnerChanged", "org.freedesktop.secrets", ownerChanged);
}

void SecretServiceBus::disconnect() {
  if (!connection_) return;
  for (unsigned const subscription : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(connection_, subscription);
  }
  subscriptions_.clear();
  g_signal_handlers_disconnect_by_data(connection_, &onChange_);
  g_object_unref(std::exchange(connection_, nullptr));
}

}  // namespace vek
