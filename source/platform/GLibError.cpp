// SPDX-License-Identifier: MIT
#include "platform/GLibError.hpp"

#include <gio/gio.h>
#include <libsecret/secret.h>

#include <algorithm>
#include <array>
#include <string>

#include "platform/KeychainStatus.hpp"
#include "platform/Log.hpp"

namespace vek {

namespace {

/// Nobody owns the service's name, and nothing can be started that would.
bool isOfMissingService(GError const* error) {
  constexpr std::array codes = {
      G_DBUS_ERROR_SERVICE_UNKNOWN,    G_DBUS_ERROR_NAME_HAS_NO_OWNER,
      G_DBUS_ERROR_SPAWN_EXEC_FAILED,  G_DBUS_ERROR_SPAWN_FORK_FAILED,
      G_DBUS_ERROR_SPAWN_CHILD_EXITED, G_DBUS_ERROR_SPAWN_CHILD_SIGNALED,
      G_DBUS_ERROR_SPAWN_FAILED,       G_DBUS_ERROR_SPAWN_SETUP_FAILED,
      G_DBUS_ERROR_SPAWN_FILE_INVALID, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND};
  return error->domain == G_DBUS_ERROR && std::ranges::find(codes, error->code) != codes.end();
}

}  // namespace

GLibError::~GLibError() {
  g_clear_error(&error_);
}

void GLibError::throwAsKeychainFailure() const {
  if (!error_) return;
  if (isOfMissingService(error_)) throw KeychainFailure{errSecNotAvailable};
  if (g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) {
    throw KeychainFailure{errSecInteractionNotAllowed};
  }
  if (g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT)) {
    throw KeychainFailure{errSecItemNotFound};
  }
  Logger("Keychain").error(std::string("The Secret Service has failed: ") + error_->message);
  throw KeychainFailure{errSecIO};
}

}  // namespace vek
