// SPDX-License-Identifier: MIT
#include "support/PermissionStore.hpp"

#include <systemd/sd-bus.h>

#include <stdexcept>
#include <utility>

namespace vek::test {

namespace {

constexpr auto storeName = "org.freedesktop.impl.portal.PermissionStore";
constexpr auto storePath = "/org/freedesktop/impl/portal/PermissionStore";
constexpr std::uint64_t lookAround = 10'000;

bool isLookupOfMicrophone(sd_bus_message* call) {
  char const* table = nullptr;
  char const* entry = nullptr;
  return sd_bus_message_is_method_call(call, storeName, "Lookup") > 0 &&
         sd_bus_message_read(call, "ss", &table, &entry) > 0 && std::string(table) == "devices" &&
         std::string(entry) == "microphone";
}

}  // namespace

PermissionStore::PermissionStore(std::string const& busAddress, Permissions permissions)
    : permissions_(std::move(permissions)) {
  auto const handler = [](sd_bus_message* call, void* self, sd_bus_error*) {
    return static_cast<PermissionStore*>(self)->answer(call);
  };
  bool const isUp = sd_bus_new(&bus_) >= 0 && sd_bus_set_address(bus_, busAddress.c_str()) >= 0 &&
                    sd_bus_set_bus_client(bus_, 1) >= 0 && sd_bus_start(bus_) >= 0 &&
                    sd_bus_add_object(bus_, nullptr, storePath, handler, this) >= 0 &&
                    sd_bus_request_name(bus_, storeName, 0) >= 0;
  if (!isUp) throw std::runtime_error("the permission store did not come up");
  thread_ = std::jthread([this](std::stop_token const& stop) {
    while (!stop.stop_requested()) {
      if (sd_bus_process(bus_, nullptr) == 0) sd_bus_wait(bus_, lookAround);
    }
  });
}

PermissionStore::~PermissionStore() {
  thread_.request_stop();
  thread_.join();
  sd_bus_flush_close_unref(bus_);
}

int PermissionStore::answer(sd_bus_message* call) const {
  if (!isLookupOfMicrophone(call)) return 0;
  if (permissions_.empty()) {
    return sd_bus_reply_method_errorf(call, "org.freedesktop.portal.Error.NotFound", "No entry");
  }
  sd_bus_message* reply = nullptr;
  sd_bus_message_new_method_return(call, &reply);
  sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "{sas}");
  for (auto const& [program, word] : permissions_) {
    sd_bus_message_append(reply, "{sas}", program.c_str(), 1, word.c_str());
  }
  sd_bus_message_close_container(reply);
  sd_bus_message_append(reply, "v", "y", 0);
  int const sent = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  return sent;
}

}  // namespace vek::test
