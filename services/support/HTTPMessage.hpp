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

/// Names and values in the order they came in. A name may come more than once.
using Items = std::vector<std::pair<std::string, std::string>>;

/// A request as a handler sees it: read to its end, its target taken apart and percent-decoded.
struct Request {
  std::string method;
  std::string path;
  Items query;
  Items headers;
  std::string body;
  /// The address of the client, such as "127.0.0.1".
  std::string peer;
  bool asksForWebSocket = false;

  [[nodiscard]] std::optional<std::string> queryItem(std::string_view name) const;
  /// The value of the first header of that name, in any case; empty without one.
  [[nodiscard]] std::string_view header(std::string_view name) const;
};

/// Takes a connection over, on a server thread.
using WebSocketHandler = std::function<void(std::shared_ptr<WebSocket>)>;

/// An answer.
struct Response {
  int status = 200;
  std::string body = {};
  std::string contentType = "application/json";
  Items headers = {};
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

/// Reads "name=value&...", the form of a query and of the body of an HTML form; nothing when it is
/// malformed.
[[nodiscard]] std::optional<Items> readItems(std::string_view text);

/// Takes a request target ("/path?name=value&...") apart into `request`; false when it is
/// malformed.
[[nodiscard]] bool readTarget(std::string_view target, Request& request);

}  // namespace vek::services
