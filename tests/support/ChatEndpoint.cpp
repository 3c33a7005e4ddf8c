// SPDX-License-Identifier: MIT
#include "support/ChatEndpoint.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace vek::test {

namespace {

/// Up to the end of the body, which is JSON and has no closing brace at the end of a block.
std::string read(int connection) {
  std::string text;
  std::array<char, 4096> block{};
  while (!text.ends_with("}]}")) {
    auto const size = recv(connection, block.data(), block.size(), 0);
    if (size <= 0) break;
    text.append(block.data(), static_cast<std::size_t>(size));
  }
  return text;
}

}  // namespace

ChatEndpoint::ChatEndpoint() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, generic, length) != 0 || listen(listener_, 16) != 0 ||
      getsockname(listener_, generic, &length) != 0) {
    throw std::runtime_error("no endpoint");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

ChatEndpoint::~ChatEndpoint() {
  shutdown(listener_, SHUT_RDWR);
  thread_.join();
  close(listener_);
}

void ChatEndpoint::answer(int status, std::string body) {
  std::lock_guard lock(mutex_);
  status_ = status;
  body_ = std::move(body);
}

std::string ChatEndpoint::request() {
  std::lock_guard lock(mutex_);
  return request_;
}

void ChatEndpoint::serve() {
  while (true) {
    int const connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) return;
    auto request = read(connection);
    ++count;
    std::lock_guard lock(mutex_);
    request_ = std::move(request);
    if (isSilent) {
      silent_.push_back(connection);
      continue;
    }
    auto const reply =
        "HTTP/1.1 " + std::to_string(status_) +
        " X\r\nConnection: close\r\nContent-Length: " + std::to_string(body_.size()) + "\r\n\r\n" +
        body_;
    std::ignore = send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
    close(connection);
  }
}

}  // namespace vek::test
