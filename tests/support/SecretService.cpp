// SPDX-License-Identifier: MIT
#include "support/SecretService.hpp"

#include <chrono>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "support/BusConnection.hpp"

namespace vek::test {

namespace {

constexpr std::chrono::seconds startTimeout{20};
constexpr auto serviceName = "org.freedesktop.secrets";
constexpr auto servicePath = "/org/freedesktop/secrets";
constexpr auto serviceInterface = "org.freedesktop.Secret.Service";
constexpr auto collection = "/org/freedesktop/secrets/collection/login";
constexpr std::string_view password = "password";

void require(int status, char const* what) {
  if (status < 0) throw std::runtime_error(std::string("the keyring did not ") + what);
}

}  // namespace

void SecretService::start(Keyring keyring) {
  std::string const folder = folder_.path().string();
  std::vector<std::string> words = {"env",
                                    "-uDISPLAY",
                                    "-uWAYLAND_DISPLAY",
                                    "DBUS_SESSION_BUS_ADDRESS=" + address(),
                                    "HOME=" + folder,
                                    "XDG_DATA_HOME=" + folder,
                                    "XDG_RUNTIME_DIR=" + folder,
                                    "gnome-keyring-daemon",
                                    "--foreground",
                                    "--components=secrets",
                                    "--control-directory=" + folder};
  if (keyring == Keyring::unlocked) words.emplace_back("--unlock");
  keyring_.emplace(std::move(words), folder_ / "log");
  keyring_->write(password);
  keyring_->closeInput();
  auto const deadline = std::chrono::steady_clock::now() + startTimeout;
  while (!isReady()) {
    if (std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("the keyring did not come up");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

/// It has its name before it knows its items.
bool SecretService::isReady() const {
  int isLocked = 0;
  return sd_bus_get_property_trivial(connectTo(address()).get(), serviceName, collection,
                                     "org.freedesktop.Secret.Collection", "Locked", nullptr, 'b',
                                     &isLocked) >= 0;
}

void SecretService::lock() const {
  auto const bus = connectTo(address());
  require(sd_bus_call_method(bus.get(), serviceName, servicePath, serviceInterface, "Lock", nullptr,
                             nullptr, "ao", 1, collection),
          "lock");
}

void SecretService::unlock() const {
  auto const bus = connectTo(address());
  sd_bus_message* opened = nullptr;
  require(sd_bus_call_method(bus.get(), serviceName, servicePath, serviceInterface, "OpenSession",
                             nullptr, &opened, "sv", "plain", "s", ""),
          "open a session");
  char const* session = nullptr;
  sd_bus_message_skip(opened, "v");
  sd_bus_message_read(opened, "o", &session);
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(bus.get(), &call, serviceName, servicePath,
                                 "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface",
                                 "UnlockWithMasterPassword");
  sd_bus_message_append(call, "o", collection);
  sd_bus_message_open_container(call, 'r', "oayays");
  sd_bus_message_append(call, "o", session);
  sd_bus_message_append_array(call, 'y', "", 0);
  sd_bus_message_append_array(call, 'y', password.data(), password.size());
  sd_bus_message_append(call, "s", "text/plain");
  sd_bus_message_close_container(call);
  int const status = sd_bus_call(bus.get(), call, 0, nullptr, nullptr);
  sd_bus_message_unref(call);
  sd_bus_message_unref(opened);
  require(status, "unlock");
}

SecretServiceCalls::SecretServiceCalls(SecretService const& service)
    : address_(service.address()),
      monitor_({"dbus-monitor", "--address", address_, "--profile", "type='method_call'"}) {
  catchUp();
}

int SecretServiceCalls::count() {
  catchUp();
  return count_;
}

void SecretServiceCalls::catchUp() {
  auto const deadline = std::chrono::steady_clock::now() + startTimeout;
  while (std::chrono::steady_clock::now() < deadline) {
    // Again and again, since the first ones come before the monitor watches.
    auto const mark = "/mark/" + std::to_string(++marks_);
    sd_bus_call_method(connectTo(address_).get(), "org.freedesktop.DBus", mark.c_str(),
                       "org.freedesktop.DBus", "GetId", nullptr, nullptr, "");
    while (auto const line = monitor_.readLine(std::chrono::milliseconds(50))) {
      if (line->find(servicePath) != std::string::npos) ++count_;
      if (line->find(mark) != std::string::npos) return;
    }
  }
  throw std::runtime_error("the bus cannot be watched");
}

}  // namespace vek::test
