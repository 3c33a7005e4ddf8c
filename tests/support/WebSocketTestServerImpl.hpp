// SPDX-License-Identifier: MIT
#pragma once

#include <openssl/types.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "support/WebSocketTestServer.hpp"

namespace vek::test {

/// What the threads of one server share.
struct WebSocketServerShared {
  SSL_CTX* tls = nullptr;
  bool keepsBinaryMessages = true;
  std::function<void(std::string_view)> onBinary = {};
  std::atomic<bool> stopping = false;

  std::mutex mutex = {};
  std::condition_variable changed = {};
  std::vector<WebSocketConnection> connections = {};
  int releases = 0;

  /// Begins a connection and gives its number.
  std::size_t add() {
    std::lock_guard const lock(mutex);
    connections.push_back({.acceptedAt = std::chrono::steady_clock::now()});
    changed.notify_all();
    return connections.size() - 1;
  }

  void stop() {
    std::lock_guard const lock(mutex);
    stopping = true;
    changed.notify_all();
  }
};

/// Takes a connection, given as a non-blocking descriptor, through its script and to its end.
void runWebSocketScript(WebSocketServerShared& shared, int descriptor, std::size_t number,
                        WebSocketScript const& script);

}  // namespace vek::test
