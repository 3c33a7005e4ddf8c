// SPDX-License-Identifier: MIT
#include "app/Terminal.hpp"

#include <fmt/format.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace vek {

namespace {

constexpr std::size_t usualWidth = 80;
constexpr std::string_view dim = "\x1b[2m";
constexpr std::string_view red = "\x1b[31m";
constexpr std::string_view plain = "\x1b[0m";

std::size_t width(std::FILE* terminal) {
  winsize size{};
  bool const isKnown = ioctl(fileno(terminal), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : usualWidth;
}

bool isTerminal(std::FILE* file) {
  char const* kind = std::getenv("TERM");
  return isatty(fileno(file)) != 0 && !(kind && std::string_view(kind) == "dumb");
}

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t characterCount(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, continuesCharacter));
}

/// Whether all of it went out. It does not throw: what shows a recording must not break it off.
bool write(std::FILE* file, std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto const byte = static_cast<unsigned char>(text[i]);
    bool const isControl = (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
    // The control characters U+0080 to U+009F, two bytes each.
    bool const isLateControl =
        byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (isLateControl) ++i;
    if (!isControl && !isLateControl) shown.push_back(text[i]);
  }
  return shown;
}

std::string lastWords(std::string_view text, std::size_t columns) {
  if (characterCount(text) <= columns) return std::string(text);
  if (columns == 0) return {};
  auto start = text.size();
  for (auto left = columns - 1; left > 0;) {
    if (!continuesCharacter(text[--start])) --left;
  }
  // From the next word on, where the cut is within one.
  if (auto const space = text.find(' ', start - 1); space != std::string_view::npos) {
    start = space + 1;
  }
  return "…" + std::string(text.substr(start));
}

Terminal::Terminal(std::FILE* output, std::FILE* messages)
    : output_(output), messages_(messages), showsChanges_(isTerminal(messages)) {}

void Terminal::printLine(std::string_view line) {
  writeLine(printable(line));
}

void Terminal::printText(std::string_view text) {
  isatty(fileno(output_)) != 0 ? printLine(text) : writeLine(text);
}

void Terminal::writeLine(std::string_view line) {
  clearChanging();
  if (!write(output_, line) || !write(output_, "\n")) hasLostOutput_ = true;
}

bool Terminal::hasReader() const {
  pollfd output{.fd = fileno(output_), .events = 0, .revents = 0};
  bool const isAbandoned = poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
  return !hasLostOutput_ && !isAbandoned;
}

void Terminal::printMessage(std::string_view line) {
  clearChanging();
  if (showsChanges_) {
    write(messages_, fmt::format("{}{}{}\n", dim, printable(line), plain));
  } else {
    write(messages_, fmt::format("{}\n", printable(line)));
  }
}

void Terminal::printError(std::string_view line) {
  clearChanging();
  if (showsChanges_) {
    write(messages_, fmt::format("{}error:{} {}\n", red, plain, printable(line)));
  } else {
    write(messages_, fmt::format("error: {}\n", printable(line)));
  }
}

void Terminal::showChanging(std::string_view label, std::string_view text) {
  if (!showsChanges_) return;
  auto shown = printable(text);
  std::ranges::replace_if(shown, [](char byte) { return byte == '\n' || byte == '\t'; }, ' ');
  auto const columns = width(messages_);
  auto const room = columns > label.size() + 2 ? columns - label.size() - 2 : 0;
  auto line = fmt::format("{}{}{} {}", dim, label, plain, lastWords(shown, room));
  if (line == changingLine_) return;
  write(messages_, fmt::format("\r\x1b[K{}", line));
  changingLine_ = std::move(line);
}

void Terminal::clearChanging() {
  if (changingLine_.empty()) return;
  changingLine_.clear();
  write(messages_, "\r\x1b[K");
}

}  // namespace vek
