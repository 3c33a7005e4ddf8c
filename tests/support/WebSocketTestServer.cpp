// SPDX-License-Identifier: MIT
#include "support/WebSocketTestServer.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "support/WebSocketTestServerImpl.hpp"

namespace vek::test {

struct WebSocketTestServer::State {
  WebSocketServerShared shared;
  std::vector<WebSocketScript> scripts;
  int listener = -1;
  int port = 0;
  std::thread acceptor;
  std::vector<std::thread> threads = {};  // the acceptor's until it has ended

  void accept() {
    while (!shared.stopping) {
      pollfd entry{listener, POLLIN, 0};
      if (poll(&entry, 1, 20) <= 0) continue;
      int const descriptor = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
      if (descriptor < 0) continue;
      int const atOnce = 1;
      setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
      std::size_t const number = shared.add();
      auto const& script = scripts[std::min(number, scripts.size() - 1)];
      threads.emplace_back([this, descriptor, number, &script] {
        runWebSocketScript(shared, descriptor, number, script);
      });
    }
  }
};

namespace {

SSL_CTX* makeContext(TestAuthority::Identity const& identity) {
  SSL_CTX* const context = SSL_CTX_new(TLS_server_method());
  SSL_CTX_set_mode(context, SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
  if (SSL_CTX_use_certificate_file(context, identity.certificate.c_str(), SSL_FILETYPE_PEM) != 1 ||
      SSL_CTX_use_PrivateKey_file(context, identity.key.c_str(), SSL_FILETYPE_PEM) != 1) {
    throw std::runtime_error("The test's certificate cannot be used.");
  }
  return context;
}

}  // namespace

std::string WebSocketConnection::header(std::string_view name) const {
  std::string const text = "\r\n" + headers;
  auto const key = "\r\n" + std::string(name) + ": ";
  auto const at = text.find(key);
  if (at == std::string::npos) return {};
  return text.substr(at + key.size(), text.find("\r\n", at + 2) - at - key.size());
}

WebSocketTestServer::WebSocketTestServer(std::vector<WebSocketScript> scripts, Options options)
    : state_(std::make_unique<State>()) {
  std::signal(SIGPIPE, SIG_IGN);
  state_->scripts = std::move(scripts);
  state_->shared.keepsBinaryMessages = options.keepsBinaryMessages;
  state_->shared.onBinary = std::move(options.onBinary);
  if (options.identity) state_->shared.tls = makeContext(*options.identity);
  state_->listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(state_->listener, generic, size) != 0 || listen(state_->listener, 64) != 0 ||
      getsockname(state_->listener, generic, &size) != 0) {
    throw std::runtime_error("The test server cannot listen.");
  }
  state_->port = ntohs(address.sin_port);
  state_->acceptor = std::thread([state = state_.get()] { state->accept(); });
}

WebSocketTestServer::~WebSocketTestServer() {
  state_->shared.stop();
  state_->acceptor.join();
  for (auto& thread : state_->threads) thread.join();
  ::close(state_->listener);
  SSL_CTX_free(state_->shared.tls);
}

std::string WebSocketTestServer::url() const {
  return (state_->shared.tls ? "wss://localhost:" : "ws://localhost:") +
         std::to_string(state_->port);
}

int WebSocketTestServer::port() const {
  return state_->port;
}

std::vector<WebSocketConnection> WebSocketTestServer::connections() const {
  std::lock_guard const lock(state_->shared.mutex);
  return state_->shared.connections;
}

int WebSocketTestServer::openConnections() const {
  std::lock_guard const lock(state_->shared.mutex);
  return static_cast<int>(
      std::ranges::count(state_->shared.connections, true, &WebSocketConnection::isOpen));
}

bool WebSocketTestServer::waitUntil(Condition const& condition,
                                    std::chrono::milliseconds limit) const {
  std::unique_lock lock(state_->shared.mutex);
  return state_->shared.changed.wait_for(lock, limit,
                                         [&] { return condition(state_->shared.connections); });
}

bool WebSocketTestServer::waitForEnd(std::optional<std::size_t> count) const {
  return waitUntil([count](auto const& connections) {
    return connections.size() == count.value_or(connections.size()) &&
           std::ranges::count(connections, true, &WebSocketConnection::isOpen) == 0;
  });
}

void WebSocketTestServer::release() {
  std::lock_guard const lock(state_->shared.mutex);
  ++state_->shared.releases;
  state_->shared.changed.notify_all();
}

}  // namespace vek::test
