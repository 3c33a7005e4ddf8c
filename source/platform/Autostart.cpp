// SPDX-License-Identifier: MIT
#include "platform/Autostart.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "platform/Files.hpp"
#include "platform/Folders.hpp"

namespace vek {

namespace {

/// The last key makes one desktop wait for its panel; the others start theirs first anyway.
constexpr auto entry = R"([Desktop Entry]
Type=Application
Name=VEK
Icon=com.vek.app
Exec={}
X-KDE-autostart-after=panel
)";

std::filesystem::path entryFile() {
  return configHome() / "autostart" / "com.vek.app.desktop";
}

/// As a word of a desktop entry's command line, whose backslashes are escaped twice.
std::string asWord(std::string_view word) {
  bool const isPlain = std::ranges::all_of(word, [](unsigned char character) {
    return std::isalnum(character) ||
           std::string_view("/._+-").find(static_cast<char>(character)) != std::string_view::npos;
  });
  if (isPlain) return std::string(word);
  std::string result = "\"";
  for (char const character : word) {
    if (character == '\\') {
      result += R"(\\\\)";
    } else if (character == '"' || character == '`' || character == '$') {
      result += std::string(R"(\\)") + character;
    } else {
      result += character == '%' ? std::string("%%") : std::string(1, character);
    }
  }
  return result + '"';
}

}  // namespace

bool isAutostarted() {
  auto const text = readFile(entryFile());
  if (!text) return false;
  // What desktop settings write instead of removing it.
  auto const has = [&](std::string_view line) { return text->find(line) != std::string::npos; };
  return !has("\nHidden=true") && !has("\nX-GNOME-Autostart-enabled=false");
}

void startAtLogin(std::filesystem::path const& program) {
  replaceFile(entryFile(), fmt::format(entry, asWord(program.string())));
}

void doNotStartAtLogin() {
  std::filesystem::remove(entryFile());
}

}  // namespace vek
