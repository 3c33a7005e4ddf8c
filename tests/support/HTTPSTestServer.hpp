// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/TestAuthority.hpp"

namespace vek::test {

/// A request as it came over the wire.
struct ReceivedRequest {
  /// The method and the target, such as "GET /path?query".
  std::string line;
  /// The lines between, each ended by "\r\n".
  std::string headers;
  std::string body;
};

/// What the server does about a request: writes bytes, as many as it is told.
struct ScriptedAnswer {
  enum class Then { keepOpen, close, hang };

  std::string bytes;
  Then then = Then::keepOpen;
  std::chrono::milliseconds delay{0};

  /// A whole answer.
  static ScriptedAnswer of(int status, std::string_view body, std::string_view headers = "");
  /// These bytes, and then the end of the connection.
  static ScriptedAnswer cutShort(std::string bytes) { return {std::move(bytes), Then::close}; }
  /// Nothing, and the connection stays open.
  static ScriptedAnswer never() { return {"", Then::hang}; }
};

/// An HTTPS server on loopback whose answers a test writes down. A thread a connection.
class HTTPSTestServer {
 public:
  using Handler = std::function<ScriptedAnswer(ReceivedRequest const&)>;

  /// `handler` is called by several threads at a time.
  HTTPSTestServer(TestAuthority const& authority, Handler handler);
  HTTPSTestServer(HTTPSTestServer const&) = delete;
  HTTPSTestServer& operator=(HTTPSTestServer const&) = delete;
  ~HTTPSTestServer();

  /// Gives every request from now on this answer.
  void answerWith(ScriptedAnswer answer);

  /// Such as "https://localhost:38947".
  [[nodiscard]] std::string url() const;
  /// The same server by a name that its certificate does not have.
  [[nodiscard]] std::string urlByAddress() const;

  /// The requests so far.
  [[nodiscard]] std::vector<ReceivedRequest> received() const;
  /// The most connections that were open at a time.
  [[nodiscard]] int mostConnections() const;
  /// How many connections the client has ended while an answer was due.
  [[nodiscard]] int abandoned() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace vek::test
