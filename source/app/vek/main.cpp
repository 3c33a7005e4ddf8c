// SPDX-License-Identifier: MIT
#include <exception>

#include "app/Signals.hpp"
#include "platform/CoreDumps.hpp"
#include "platform/Deployment.hpp"
#include "platform/FatalError.hpp"
#include "platform/Log.hpp"
#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "runtime/Report.hpp"
#include "views/Application.hpp"

int main(int argumentCount, char** arguments) {
  vek::disableCoreDumps();
  vek::Signals signals;
  vek::setReportHandler(
      [logger = vek::Logger("runtime")](std::string_view warning) { logger.error(warning); });
  try {
    // Found now, so that a bad one is told before anything begins.
    static_cast<void>(vek::deployment());
  } catch (std::exception const& error) {
    vek::fatalError(error.what());
  }
  signals.onSignal([](int) { vek::terminate(); });
  int const status = vek::applicationMain(argumentCount, arguments);
  vek::stopSharedSpeechRecognizer();
  return status;
}
