// SPDX-License-Identifier: MIT
#include "platform/Log.hpp"

#define SD_JOURNAL_SUPPRESS_LOCATION
#include <sys/stat.h>
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <utility>

#include <fmt/format.h>

namespace vek {
namespace {

constexpr std::string_view subsystem = "com.vek.app";

/// JOURNAL_STREAM names the device and inode of the stream that a service manager connected.
bool isStderrTheJournal() {
  char const* stream = std::getenv("JOURNAL_STREAM");
  struct stat status{};
  if (!stream || fstat(STDERR_FILENO, &status) != 0) return false;
  return fmt::format("{}:{}", status.st_dev, status.st_ino) == stream;
}

int priority(LogLevel level) {
  switch (level) {
    case LogLevel::debug:
      return LOG_DEBUG;
    case LogLevel::notice:
      return LOG_NOTICE;
    case LogLevel::error:
      return LOG_ERR;
  }
  return LOG_NOTICE;
}

void writeToJournal(LogLevel level, std::string_view category, std::string_view message) {
  std::array fields{fmt::format("MESSAGE={}", message), fmt::format("PRIORITY={}", priority(level)),
                    fmt::format("SUBSYSTEM={}", subsystem), fmt::format("CATEGORY={}", category)};
  std::array<iovec, fields.size()> vectors{};
  for (std::size_t i = 0; i < fields.size(); ++i) vectors[i] = {fields[i].data(), fields[i].size()};
  sd_journal_sendv(vectors.data(), static_cast<int>(vectors.size()));
}

/// What could steer a terminal. Words of strangers stand in messages.
bool isControl(char character) {
  auto const byte = static_cast<unsigned char>(character);
  return (byte < 0x20 && character != '\n' && character != '\t') || byte == 0x7F;
}

void writeToStderr(LogLevel level, std::string_view category, std::string_view message) {
  std::string line = fmt::format("{} [{}] {}: {}\n", subsystem, category, name(level), message);
  std::erase_if(line, isControl);
  std::string_view rest = line;
  while (!rest.empty()) {
    ssize_t const written = ::write(STDERR_FILENO, rest.data(), rest.size());
    if (written <= 0) return;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
}

struct Log {
  std::atomic<LogLevel> lowest = logLevelFromEnvironment();
  std::mutex mutex;
  LogSink sink = systemLogSink();
};

/// Never released: objects that log may outlive static destruction.
Log& log() {
  static auto* const instance = new Log;
  return *instance;
}

}  // namespace

std::string_view name(LogLevel level) {
  constexpr std::array<std::string_view, 3> names{"debug", "notice", "error"};
  return names.at(static_cast<std::size_t>(level));
}

LogLevel logLevelFromEnvironment() {
  char const* text = std::getenv("VEK_LOG");
  if (text && text == name(LogLevel::debug)) return LogLevel::debug;
  if (text && text == name(LogLevel::error)) return LogLevel::error;
  return LogLevel::notice;
}

LogSink systemLogSink() {
  return isStderrTheJournal() ? writeToJournal : writeToStderr;
}

bool Logger::isWritten(LogLevel level) {
  return level >= log().lowest.load();
}

void Logger::write(LogLevel level, std::string_view message) const {
  if (!isWritten(level)) return;
  std::lock_guard lock(log().mutex);
  log().sink(level, category_, message);
}

LogRedirection::LogRedirection(LogSink sink, LogLevel lowest) {
  std::lock_guard lock(log().mutex);
  previousSink_ = std::exchange(log().sink, std::move(sink));
  previousLowest_ = log().lowest.exchange(lowest);
}

LogRedirection::~LogRedirection() {
  std::lock_guard lock(log().mutex);
  log().sink = std::move(previousSink_);
  log().lowest = previousLowest_;
}

}  // namespace vek
