// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/ProxySettings.hpp"
#include "runtime/Result.hpp"
#include "runtime/UniqueFunction.hpp"

namespace boost::asio {
class io_context;
}

namespace vek {

/// Makes one connection, directly or through the tunnel of a proxy. Belongs to the thread of its
/// loop.
class TCPConnector {
 public:
  /// A descriptor that the receiver owns, or a WebSocketError.
  using Completion = UniqueFunction<void(Result<int>)>;

  struct Target {
    std::string host;
    std::uint16_t port;
    std::optional<Proxy> proxy = {};
  };

  /// Tries the addresses of the host one after the other, a quarter of a second apart, and keeps
  /// the first that answers. `done` is never called within the call.
  static std::shared_ptr<TCPConnector> start(boost::asio::io_context& loop, Target target,
                                             Completion done);

  TCPConnector() = default;
  TCPConnector(TCPConnector const&) = delete;
  TCPConnector& operator=(TCPConnector const&) = delete;
  virtual ~TCPConnector() = default;

  /// Ends what is under way; `done` is then never called.
  virtual void cancel() = 0;
};

/// Host and port as a request names them: an IPv6 address in brackets.
[[nodiscard]] std::string hostAndPort(std::string const& host, std::uint16_t port);

}  // namespace vek
