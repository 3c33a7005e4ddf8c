// SPDX-License-Identifier: MIT
#include "platform/UpdateSettings.hpp"

#include <fmt/format.h>

#include <system_error>
#include <utility>

#include "platform/Log.hpp"
#include "platform/Number.hpp"

namespace vek {
namespace {

std::optional<bool> truth(std::string_view text) {
  if (text == "true") return true;
  if (text == "false") return false;
  return std::nullopt;
}

template <class Value>
struct Setting {
  UserDefaultsKey<Value> key;

  void write(UserDefaults& defaults, Value const& value) const {
    try {
      key.write(defaults, value);
    } catch (std::system_error const& error) {
      Logger("Updater").error(
          fmt::format("The setting {} cannot be stored: {}", key.name, error.what()));
    }
  }
  [[nodiscard]] Value read(UserDefaults& defaults) const { return key.read(defaults); }
};

Setting<bool> truthSetting(char const* name, bool otherwise) {
  return {{.name = name,
           .defaultValue = otherwise,
           .serialize = [](bool value) { return std::string(value ? "true" : "false"); },
           .deserialize = truth}};
}

template <class Number>
Setting<Number> numberSetting(std::string name) {
  return {{.name = std::move(name),
           .defaultValue = 0,
           .serialize = [](Number value) { return std::to_string(value); },
           .deserialize = number<Number>}};
}

Setting<bool> checks() {
  return truthSetting("automaticallyChecksForUpdates", true);
}

Setting<bool> downloads() {
  return truthSetting("automaticallyDownloadsUpdates", false);
}

Setting<std::int64_t> lastCheckSetting() {
  return numberSetting<std::int64_t>("lastUpdateCheck");
}

Setting<std::uint64_t> serialSetting(std::string const& publisher) {
  return numberSetting<std::uint64_t>("latestUpdateSerial " + publisher);
}

Setting<std::string> skippedSetting() {
  return {{.name = "skippedUpdate",
           .defaultValue = "",
           .serialize = [](std::string const& value) { return value; },
           .deserialize = [](std::string_view text) { return std::optional(std::string(text)); }}};
}

}  // namespace

bool UpdateSettings::automaticallyChecksForUpdates() const {
  return checks().read(*defaults_);
}

void UpdateSettings::setAutomaticallyChecksForUpdates(bool value) const {
  checks().write(*defaults_, value);
}

bool UpdateSettings::automaticallyDownloadsUpdates() const {
  return downloads().read(*defaults_);
}

void UpdateSettings::setAutomaticallyDownloadsUpdates(bool value) const {
  downloads().write(*defaults_, value);
}

Date UpdateSettings::lastCheck() const {
  return Date(std::chrono::seconds(lastCheckSetting().read(*defaults_)));
}

void UpdateSettings::setLastCheck(Date date) const {
  auto const seconds =
      std::chrono::duration_cast<std::chrono::seconds>(date.time_since_epoch()).count();
  lastCheckSetting().write(*defaults_, seconds);
}

std::string UpdateSettings::skippedVersion() const {
  return skippedSetting().read(*defaults_);
}

void UpdateSettings::setSkippedVersion(std::string const& version) const {
  skippedSetting().write(*defaults_, version);
}

std::uint64_t UpdateSettings::latestSerial(std::string const& publisher) const {
  return serialSetting(publisher).read(*defaults_);
}

void UpdateSettings::setLatestSerial(std::string const& publisher, std::uint64_t serial) const {
  serialSetting(publisher).write(*defaults_, serial);
}

}  // namespace vek
