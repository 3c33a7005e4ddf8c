// SPDX-License-Identifier: MIT
#include "platform/HTTPError.hpp"

namespace vek {
namespace {

char const* text(HTTPError::Code code) {
  using enum HTTPError::Code;
  switch (code) {
    case cannotFindHost:
      return "The server could not be found";
    case cannotConnect:
      return "Could not connect to the server";
    case timedOut:
      return "The request timed out";
    case untrustedServer:
      return "The server's certificate is not trusted";
    case connectionLost:
      return "The connection to the server was lost";
    case notHTTP:
      return "The server does not speak HTTP";
    case bodyTooLarge:
      return "The server's answer is too large";
    case other:
      break;
  }
  return "The request failed";
}

}  // namespace

HTTPError::HTTPError(Code code, std::string const& detail) : code_(code), description_(text(code)) {
  description_ += detail.empty() ? "." : " (" + detail + ").";
}

}  // namespace vek
