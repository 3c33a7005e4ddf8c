// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "services/support/WebSocket.hpp"

namespace vek::services {

/// A request as a handler sees it: read to its end, its target taken apart and percent-decoded.
struct Request {
  std::string method;
  std::string path;
  std::vector<std::pair<std::string, std::string>> query;
  /// The value of the header "Authorization"; empty without one.
  std::string authorization;
  std::string body;
  bool asksForWebSocket = false;

  [[nodiscard]] std::optional<std::string> queryItem(std::string_view name) const;
};

/// Takes a connection over, on a server thread.
using WebSocketHandler = std::function<void(std::shared_ptr<WebSocket>)>;

/// An answer. Its body is JSON.
struct Response {
  int status = 200;
  std::string body = {};
  /// The methods for the header "Allow"; empty for none.
  std::string allow = {};
  /// How a client that is refused with 401 has to say who it is.
  std::string challenge = "Bearer";
  /// In place of an answer, for a request that asks for it alone.
  WebSocketHandler webSocket = {};

  /// A refusal: an `ErrorDTO` with `message`.
  static Response refusal(int status, std::string_view message);
};

/// A request that can not be granted, and why.
struct Refusal : std::runtime_error {
  Refusal(int code, std::string const& message) : std::runtime_error(message), status(code) {}
  int status;
};

/// Answers one request. Called once, from any thread.
using Reply = std::function<void(Response)>;
/// Called on a server thread; it must not wait for anything slower than the disk, and not throw.
using Handler = std::function<void(Request, Reply)>;

/// Takes a request target ("/path?name=value&...") apart into `request`; false when it is
/// malformed.
[[nodiscard]] bool readTarget(std::string_view target, Request& request);

}  // namespace vek::services
