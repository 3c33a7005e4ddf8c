// SPDX-License-Identifier: MIT
#include "platform/Folders.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace vek {
namespace {

/// As the rules of the XDG base folders have it, values that are not absolute are ignored.
std::filesystem::path folderFromEnvironment(char const* variable, std::string_view otherwise) {
  char const* value = std::getenv(variable);
  if (value && value[0] == '/') return value;
  return homeFolder() / otherwise;
}

}  // namespace

std::filesystem::path homeFolder() {
  if (char const* home = std::getenv("HOME"); home && *home) return home;
  passwd const* user = getpwuid(getuid());
  return user ? user->pw_dir : "/";
}

std::filesystem::path dataHome() {
  return folderFromEnvironment("XDG_DATA_HOME", ".local/share");
}

std::filesystem::path configHome() {
  return folderFromEnvironment("XDG_CONFIG_HOME", ".config");
}

std::filesystem::path runtimeFolder() {
  if (char const* given = std::getenv("XDG_RUNTIME_DIR"); given && given[0] == '/') return given;
  auto const usual = std::filesystem::path("/run/user") / std::to_string(getuid());
  return access(usual.c_str(), W_OK) == 0 ? usual : dataHome();
}

std::filesystem::path expandedPath(std::string_view text) {
  constexpr std::string_view data = "~/.local/share/";
  constexpr std::string_view home = "~/";
  if (text.starts_with(data)) return dataHome() / text.substr(data.size());
  if (text.starts_with(home)) return homeFolder() / text.substr(home.size());
  return text;
}

}  // namespace vek
