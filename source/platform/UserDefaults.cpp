// SPDX-License-Identifier: MIT
#include "platform/UserDefaults.hpp"

#include <fmt/format.h>
#include <boost/json.hpp>

#include "platform/Files.hpp"
#include "platform/Folders.hpp"
#include "platform/Log.hpp"

namespace vek {
namespace {

struct Settings {
  boost::json::object values;
  /// What is wrong with the file; empty when nothing is.
  std::string problem;
};

Settings parseSettings(std::optional<std::string> const& text) {
  if (!text) return {};
  boost::system::error_code error;
  boost::json::value value = boost::json::parse(*text, error);
  if (error) return {{}, error.message()};
  if (!value.is_object()) return {{}, "it holds no JSON object"};
  return {std::move(value.as_object()), {}};
}

Settings readSettings(std::filesystem::path const& file) {
  try {
    return parseSettings(readFile(file));
  } catch (std::system_error const& error) {
    return {{}, error.code().message()};
  }
}

}  // namespace

UserDefaults& UserDefaults::standard() {
  static auto* const instance = new UserDefaults(configHome() / "vek" / "settings.json");
  return *instance;
}

std::optional<std::string> UserDefaults::string(std::string_view key) const {
  Settings const settings = readSettings(file_);
  if (!settings.problem.empty()) {
    reportOnce(
        fmt::format("The settings in {} cannot be used: {}", file_.string(), settings.problem));
  }
  if (auto const* value = settings.values.if_contains(key)) {
    if (auto const* text = value->if_string()) return std::string(*text);
    reportUndecodable(key, boost::json::serialize(*value));
  }
  std::lock_guard const lock(mutex_);
  auto const registered = registered_.find(key);
  if (registered == registered_.end()) return std::nullopt;
  return registered->second;
}

void UserDefaults::set(std::string_view key, std::string_view value) {
  FileLock const lock(file_.string() + ".lock", patience_);
  // A file that cannot be read is no empty one: its other settings must not be lost.
  boost::json::object values = parseSettings(readFile(file_)).values;
  values[key] = value;
  replaceFile(file_, boost::json::serialize(values) + "\n");
}

void UserDefaults::registerDefault(std::string_view key, std::string_view value) {
  std::lock_guard const lock(mutex_);
  registered_.insert_or_assign(std::string(key), std::string(value));
}

void UserDefaults::reportUndecodable(std::string_view key, std::string_view value) const {
  reportOnce(fmt::format("The setting {} has the unknown value {}; the default is used", key,
                         value.substr(0, 100)));
}

void UserDefaults::reportOnce(std::string const& problem) const {
  {
    std::lock_guard const lock(mutex_);
    if (!reported_.insert(problem).second) return;
  }
  Logger("UserDefaults").error(problem);
}

}  // namespace vek
