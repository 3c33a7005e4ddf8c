// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

namespace vek {

/// Why a socket sends or reads no more.
class WebSocketError final : public std::exception {
 public:
  /// Those that callers tell apart have the platform's number.
  enum class Code : int {
    /// The connection was open, and the other side or the network has ended it.
    notConnected = 57,
    /// This side cancelled the socket.
    cancelled = -999,
    /// It was not open in time, or a message could not be sent in time.
    timedOut = -1001,
    cannotFindHost = -1003,
    cannotConnect = -1004,
    /// The server answered the upgrade with something else.
    badServerResponse = -1011,
    untrustedServer = -1202,
    messageTooLong = 40,
    /// The other side broke the protocol.
    protocolError = 100,
    other = -1,
  };

  /// `detail` is what the transport knows beyond the code; it may be empty.
  WebSocketError(Code code, std::string const& detail);

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  Code code_;
  std::string description_;
};

}  // namespace vek
