// SPDX-License-Identifier: MIT
#include "platform/WebSocketError.hpp"

namespace vek {
namespace {

char const* text(WebSocketError::Code code) {
  using enum WebSocketError::Code;
  switch (code) {
    case notConnected:
      return "The connection to the server was lost";
    case cancelled:
      return "The connection was cancelled";
    case timedOut:
      return "The connection timed out";
    case cannotFindHost:
      return "The server could not be found";
    case cannotConnect:
      return "Could not connect to the server";
    case badServerResponse:
      return "The server refused the connection";
    case untrustedServer:
      return "The server's certificate is not trusted";
    case messageTooLong:
      return "The server's message is too long";
    case protocolError:
      return "The server broke the protocol";
    case other:
      break;
  }
  return "The connection failed";
}

}  // namespace

WebSocketError::WebSocketError(Code code, std::string const& detail)
    : code_(code), description_(text(code)) {
  description_ += detail.empty() ? "." : " (" + detail + ").";
}

}  // namespace vek
