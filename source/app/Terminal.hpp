// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace vek {

/// A text as it may be shown: control characters, which could steer a terminal, are left out;
/// newlines and tabs stay.
std::string printable(std::string_view text);

/// The end of a UTF-8 text in at most so many characters: all of it where it fits, and otherwise an
/// ellipsis and the last words.
std::string lastWords(std::string_view text, std::size_t columns);

/// Lines of output, with a last one that may still change where a terminal can show that.
class Terminal {
 public:
  /// Results go to `output`; progress and errors to `messages`, the changing line among them.
  explicit Terminal(std::FILE* output = stdout, std::FILE* messages = stderr);

  [[nodiscard]] bool showsChanges() const { return showsChanges_; }

  /// Writes a line of results.
  void printLine(std::string_view line);
  /// Writes a text for others to keep: as it is, but where a terminal would obey it.
  void printText(std::string_view text);
  /// Writes a line that is no result.
  void printMessage(std::string_view line);
  void printError(std::string_view line);

  /// Replaces the changing line. Does nothing where there is no terminal.
  void showChanging(std::string_view label, std::string_view text);
  void clearChanging();

  /// Results could not be written: the disk is full, or nobody reads the pipe any more.
  [[nodiscard]] bool hasLostOutput() const { return hasLostOutput_; }
  /// Somebody may still read results.
  [[nodiscard]] bool hasReader() const;

 private:
  void writeLine(std::string_view line);

  std::FILE* output_;
  std::FILE* messages_;
  bool showsChanges_;
  /// As it is shown now; empty when there is none.
  std::string changingLine_;
  bool hasLostOutput_ = false;
};

}  // namespace vek
