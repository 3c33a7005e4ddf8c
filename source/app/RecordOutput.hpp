// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "app/Terminal.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// What a recording shows: for people the pending text in place and each finished piece on a line
/// of its own; for programs one JSON object a line.
class RecordOutput {
 public:
  RecordOutput(Terminal& terminal, bool asJSON) : terminal_(terminal), asJSON_(asJSON) {}

  void message(std::string_view text);
  void error(std::string_view text);
  /// May be called often; programs get a line for each new text.
  void partial(std::string_view elapsed, std::string_view text);
  void piece(std::string_view text);
  void finished(UUID const& transcript, bool isStored);

 private:
  void printObject(std::string_view key, std::string_view value);

  Terminal& terminal_;
  bool asJSON_;
  std::string printedPartial_;
};

}  // namespace vek
