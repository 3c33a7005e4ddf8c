// SPDX-License-Identifier: MIT
#pragma once

#include "app/CommandLine.hpp"
#include "app/Signals.hpp"
#include "app/Terminal.hpp"

namespace vek {

// What each command does, on the main thread. Each returns the exit status of the process.

int record(CommandLine::Record const& options, bool asJSON, Terminal& terminal, Signals& signals);
int transcribe(CommandLine::Transcribe const& options, bool asJSON, Terminal& terminal,
               Signals& signals);
int provider(CommandLine::Provider const& options, bool asJSON, Terminal& terminal);
int listTranscripts(CommandLine::Transcripts const& options, bool asJSON, Terminal& terminal,
                    Signals& signals);
int watch(CommandLine::Watch const& options, bool asJSON, Terminal& terminal, Signals& signals);
int listCustomers(bool asJSON, Terminal& terminal, Signals& signals);
int show(CommandLine::Show const& options, bool asJSON, Terminal& terminal, Signals& signals);
int analyse(CommandLine::Analyse const& options, bool asJSON, Terminal& terminal, Signals& signals);
int assign(CommandLine::Assign const& options, bool asJSON, Terminal& terminal, Signals& signals);
int exportTranscript(CommandLine::Export const& options, bool asJSON, Terminal& terminal,
                     Signals& signals);
int logIn(bool asJSON, Terminal& terminal, Signals& signals);
int logOut(bool asJSON, Terminal& terminal, Signals& signals);
int whoAmI(bool asJSON, Terminal& terminal, Signals& signals);
/// Starts or stops a recording of the desktop program.
int toggle();
int autostart(CommandLine::Autostart const& options, bool asJSON, Terminal& terminal);
int updates(CommandLine::Updates const& options, bool asJSON, Terminal& terminal);
int callback(CommandLine::Callback const& options, Terminal& terminal, Signals& signals);

}  // namespace vek
