// SPDX-License-Identifier: MIT
#include "support/HTTPSTestServer.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>

namespace vek::test {

struct HTTPSTestServer::State {
  SSL_CTX* context = nullptr;
  Handler handler;
  int listener = -1;
  int port = 0;
  std::atomic<bool> stopping = false;
  std::atomic<int> abandoned = 0;
  mutable std::mutex mutex;
  std::vector<ReceivedRequest> received;
  int connections = 0;
  int mostConnections = 0;
  std::thread acceptor;
  std::vector<std::thread> threads;  // the acceptor's until it has ended

  void accept();
  void serve(int descriptor);
  void converse(SSL* connection);
  std::optional<ReceivedRequest> receive(SSL* connection, std::string& buffer);
  bool carryOut(ScriptedAnswer const& answer, SSL* connection);
  bool sleep(std::chrono::milliseconds duration, int descriptor);
};

namespace {

using std::chrono::milliseconds;

bool isReadable(int descriptor, milliseconds wait) {
  pollfd entry{descriptor, POLLIN, 0};
  return poll(&entry, 1, static_cast<int>(wait.count())) > 0;
}

std::size_t contentLength(std::string_view headers) {
  constexpr std::string_view name = "\r\nContent-Length: ";
  auto const at = headers.find(name);
  if (at == std::string_view::npos) return 0;
  return std::stoul(std::string(headers.substr(at + name.size(), 20)));
}

}  // namespace

ScriptedAnswer ScriptedAnswer::of(int status, std::string_view body, std::string_view headers) {
  std::string bytes = "HTTP/1.1 " + std::to_string(status) + " Scripted\r\n" + std::string(headers);
  if (status != 204) bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  return {bytes + "\r\n" + std::string(body)};
}

HTTPSTestServer::HTTPSTestServer(TestAuthority const& authority, Handler handler)
    : state_(std::make_shared<State>()) {
  std::signal(SIGPIPE, SIG_IGN);
  state_->handler = std::move(handler);
  state_->context = SSL_CTX_new(TLS_server_method());
  if (SSL_CTX_use_certificate_file(state_->context, authority.certificate().c_str(),
                                   SSL_FILETYPE_PEM) != 1 ||
      SSL_CTX_use_PrivateKey_file(state_->context, authority.key().c_str(), SSL_FILETYPE_PEM) !=
          1) {
    throw std::runtime_error("The test's certificate cannot be used.");
  }
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

HTTPSTestServer::~HTTPSTestServer() {
  state_->stopping = true;
  state_->acceptor.join();
  for (auto& thread : state_->threads) thread.join();
  close(state_->listener);
  SSL_CTX_free(state_->context);
}

void HTTPSTestServer::answerWith(ScriptedAnswer answer) {
  std::lock_guard const lock(state_->mutex);
  state_->handler = [answer = std::move(answer)](auto&) { return answer; };
}

std::string HTTPSTestServer::url() const {
  return "https://localhost:" + std::to_string(state_->port);
}

std::string HTTPSTestServer::urlByAddress() const {
  return "https://127.0.0.1:" + std::to_string(state_->port);
}

std::vector<ReceivedRequest> HTTPSTestServer::received() const {
  std::lock_guard const lock(state_->mutex);
  return state_->received;
}

int HTTPSTestServer::mostConnections() const {
  std::lock_guard const lock(state_->mutex);
  return state_->mostConnections;
}

int HTTPSTestServer::abandoned() const {
  return state_->abandoned;
}

void HTTPSTestServer::State::accept() {
  while (!stopping) {
    if (!isReadable(listener, milliseconds(20))) continue;
    int const descriptor = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (descriptor < 0) continue;
    std::lock_guard const lock(mutex);
    mostConnections = std::max(mostConnections, ++connections);
    threads.emplace_back([this, descriptor] { serve(descriptor); });
  }
}

void HTTPSTestServer::State::serve(int descriptor) {
  SSL* const connection = SSL_new(context);
  SSL_set_fd(connection, descriptor);
  if (SSL_accept(connection) == 1) converse(connection);
  SSL_free(connection);
  close(descriptor);
  std::lock_guard const lock(mutex);
  --connections;
}

void HTTPSTestServer::State::converse(SSL* connection) {
  std::string buffer;
  while (auto request = receive(connection, buffer)) {
    std::unique_lock lock(mutex);
    received.push_back(*request);
    Handler const answer = handler;
    lock.unlock();
    if (!carryOut(answer(*request), connection)) return;
  }
}

std::optional<ReceivedRequest> HTTPSTestServer::State::receive(SSL* connection,
                                                               std::string& buffer) {
  while (!stopping) {
    if (auto const end = buffer.find("\r\n\r\n"); end != std::string::npos) {
      std::size_t const length = contentLength(buffer.substr(0, end + 2));
      if (buffer.size() >= end + 4 + length) {
        auto const line = buffer.find("\r\n");
        ReceivedRequest request{buffer.substr(0, buffer.find(" HTTP/")),
                                buffer.substr(line + 2, end - line),
                                buffer.substr(end + 4, length)};
        buffer.erase(0, end + 4 + length);
        return request;
      }
    }
    if (SSL_pending(connection) == 0 && !isReadable(SSL_get_fd(connection), milliseconds(20))) {
      continue;
    }
    std::array<char, 4096> block{};
    int const count = SSL_read(connection, block.data(), static_cast<int>(block.size()));
    if (count <= 0) return std::nullopt;
    buffer.append(block.data(), static_cast<std::size_t>(count));
  }
  return std::nullopt;
}

/// Whether the connection goes on.
bool HTTPSTestServer::State::carryOut(ScriptedAnswer const& answer, SSL* connection) {
  int const descriptor = SSL_get_fd(connection);
  if (!sleep(answer.delay, descriptor)) return false;
  if (!answer.bytes.empty()) {
    SSL_write(connection, answer.bytes.data(), static_cast<int>(answer.bytes.size()));
  }
  if (answer.then == ScriptedAnswer::Then::hang) {
    while (!stopping && sleep(milliseconds(100), descriptor)) {
    }
    return false;
  }
  return answer.then == ScriptedAnswer::Then::keepOpen;
}

/// False when the client went away or the server is to stop.
bool HTTPSTestServer::State::sleep(milliseconds duration, int descriptor) {
  auto const end = std::chrono::steady_clock::now() + duration;
  while (std::chrono::steady_clock::now() < end) {
    if (stopping) return false;
    if (isReadable(descriptor, milliseconds(10))) {
      ++abandoned;  // the client says nothing more but that it goes
      return false;
    }
  }
  return true;
}

}  // namespace vek::test
