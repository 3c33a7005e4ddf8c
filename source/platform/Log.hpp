// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>

namespace vek {

enum class LogLevel { debug, notice, error };

[[nodiscard]] std::string_view name(LogLevel level);

/// Writes to the system's log under the subsystem "com.vek.app" and a category. Under a desktop
/// session or a service the journal gets the fields SUBSYSTEM, CATEGORY and PRIORITY; elsewhere
/// each message is a line on stderr. Any thread may log.
///
/// Debug messages are written only with VEK_LOG=debug, and VEK_LOG=error silences notices.
class Logger {
 public:
  explicit Logger(std::string category) : category_(std::move(category)) {}

  void debug(std::string_view message) const { write(LogLevel::debug, message); }
  void notice(std::string_view message) const { write(LogLevel::notice, message); }
  void error(std::string_view message) const { write(LogLevel::error, message); }

  /// `message` is called only when debug messages are written.
  template <std::invocable Message>
  void debug(Message&& message) const {
    if (isWritten(LogLevel::debug)) write(LogLevel::debug, message());
  }

  [[nodiscard]] static bool isWritten(LogLevel level);

 private:
  void write(LogLevel level, std::string_view message) const;

  std::string category_;
};

/// Where messages go. Called by any thread, one message at a time; must not log itself.
using LogSink = std::function<void(LogLevel, std::string_view category, std::string_view message)>;

/// The system's log as the process found it at its start.
[[nodiscard]] LogSink systemLogSink();

/// Replaces the sink and the lowest level written for as long as it lives: for tests, and for a
/// program that has its own way to show messages. The last one made must be the first to go.
class LogRedirection {
 public:
  LogRedirection(LogSink sink, LogLevel lowest);
  LogRedirection(LogRedirection const&) = delete;
  LogRedirection& operator=(LogRedirection const&) = delete;
  ~LogRedirection();

 private:
  LogSink previousSink_;
  LogLevel previousLowest_;
};

/// The lowest level that VEK_LOG asks for.
[[nodiscard]] LogLevel logLevelFromEnvironment();

}  // namespace vek
