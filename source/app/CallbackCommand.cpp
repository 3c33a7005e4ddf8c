// SPDX-License-Identifier: MIT
#include <poll.h>
#include <unistd.h>

#include <array>
#include <boost/algorithm/string/trim.hpp>
#include <chrono>
#include <string>

#include "app/Commands.hpp"
#include "app/ReportedErrors.hpp"
#include "platform/RedirectListener.hpp"
#include "runtime/MainQueue.hpp"

namespace vek {

namespace {

constexpr std::chrono::milliseconds pollInterval(50);
constexpr std::size_t longestLine = 64 * 1024;

/// Whether there is more to come of the line.
bool readSome(std::string& line) {
  pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
  if (poll(&input, 1, 0) <= 0) return true;
  std::array<char, 4096> block{};
  auto const count = read(STDIN_FILENO, block.data(), block.size());
  if (count <= 0) return false;
  line.append(block.data(), static_cast<std::size_t>(count));
  return line.find('\n') == std::string::npos && line.size() <= longestLine;
}

/// The first line of standard input.
std::string readLine(Signals& signals) {
  std::string line;
  bool isInterrupted = false;
  signals.onSignal([&](int) { isInterrupted = true; });
  MainQueue::shared().runUntil([&] { return isInterrupted || !readSome(line); }, pollInterval);
  signals.onSignal(nullptr);
  if (isInterrupted) throw Interrupted();
  return line.substr(0, line.find('\n'));
}

}  // namespace

int callback(CommandLine::Callback const& options, Terminal& terminal, Signals& signals) {
  return reportingErrors(terminal, [&] {
    auto const url = options.url == "-" ? readLine(signals) : options.url;
    if (!deliverRedirect(boost::algorithm::trim_copy(url))) {
      throw std::runtime_error("No login is waiting for this.");
    }
  });
}

}  // namespace vek
