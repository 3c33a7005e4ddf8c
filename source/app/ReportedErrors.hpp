// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

#include "app/Terminal.hpp"
#include "app/TranscriptsSession.hpp"

namespace vek {

/// Runs a command and gives its exit status. What it throws is told, but for an interruption.
template <class Command>
int reportingErrors(Terminal& terminal, Command command) {
  try {
    command();
    return 0;
  } catch (Interrupted const&) {
    return 1;
  } catch (std::exception const& error) {
    terminal.printError(error.what());
    return 1;
  }
}

}  // namespace vek
