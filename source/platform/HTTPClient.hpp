// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/Task.hpp"

namespace vek {

struct HTTPHeader {
  std::string name;
  std::string value;

  /// True when it would end before its end, and what follows would be something else.
  [[nodiscard]] bool breaksLine() const;
};

struct HTTPRequest {
  std::string method = "GET";
  std::string url;
  std::vector<HTTPHeader> headers = {};
  std::optional<std::string> body = {};
  /// For the whole exchange, counted from when a connection is there for it or to be made for it.
  std::chrono::milliseconds timeout = std::chrono::seconds(60);
  /// Where the answer has to be smaller than the client's own bound.
  std::optional<std::size_t> largestBody = {};
};

struct HTTPResponse {
  int status = 0;
  std::vector<HTTPHeader> headers = {};
  std::string body = {};
  std::string url = {};

  /// The value of the first header of that name, in any case; empty when there is none.
  [[nodiscard]] std::string_view header(std::string_view name) const;
};

/// Sends requests over HTTP/2 or HTTP/1.1, many at a time. An answer of any status is an answer:
/// redirects are not followed, so that no token reaches another server. Servers are checked
/// against the system's authorities and, beside them, the deployment's.
struct HTTPClient {
  struct Options {
    /// PEM file of one more trusted authority, read for each new connection; empty for none.
    std::filesystem::path trustedAuthority = {};
    std::size_t largestBody = std::size_t{256} << 20U;
  };

  /// Throws HTTPError. Stopping the task ends the exchange.
  std::function<Task<HTTPResponse>(HTTPRequest)> send;

  /// A client with connections and a thread of its own. The thread ends with the last copy of
  /// `send` and its tasks.
  static HTTPClient make(Options options);

  /// The client of this process, which trusts what its deployment does.
  static HTTPClient const& shared();
};

}  // namespace vek
