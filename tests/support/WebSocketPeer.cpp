// SPDX-License-Identifier: MIT
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "support/WebSocketTestServerImpl.hpp"

namespace vek::test {
namespace {

/// The client has gone, the script has ended the connection, or the server ends.
struct Ended {};

/// What a client proves its server to be with.
std::string acceptance(std::string const& key) {
  std::string const text = key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
  std::array<unsigned char, 20> digest{};
  EVP_Digest(text.data(), text.size(), digest.data(), nullptr, EVP_sha1(), nullptr);
  std::array<unsigned char, 32> encoded{};
  int const size = EVP_EncodeBlock(encoded.data(), digest.data(), digest.size());
  return {reinterpret_cast<char const*>(encoded.data()), static_cast<std::size_t>(size)};
}

class Peer final : public WebSocketPeer {
 public:
  Peer(WebSocketServerShared& shared, int descriptor, std::size_t number)
      : shared_(shared), descriptor_(descriptor), number_(number) {}
  Peer(Peer const&) = delete;
  Peer& operator=(Peer const&) = delete;
  ~Peer() override {
    SSL_free(tls_);
    if (descriptor_ >= 0) ::close(descriptor_);
    update([](auto& connection) { connection.isOpen = false; });
  }

  void tunnel() override {
    readHead([](auto& connection, std::string line, std::string headers) {
      connection.tunnelLine = std::move(line);
      connection.tunnelHeaders = std::move(headers);
    });
    constexpr std::string_view granted = "HTTP/1.1 200 Granted\r\n\r\n";
    ::send(descriptor_, granted.data(), granted.size(), MSG_NOSIGNAL);
  }

  void readRequest() override {
    if (requested_) return;
    requested_ = true;
    if (shared_.tls && !tls_) handshake();
    readHead([this](auto& connection, std::string line, std::string headers) {
      connection.line = std::move(line);
      connection.headers = std::move(headers);
      key_ = connection.header("Sec-WebSocket-Key");
    });
  }

  void answer(int status, std::string_view headers, std::string_view body) override {
    readRequest();
    bytes("HTTP/1.1 " + std::to_string(status) + " Scripted\r\n" + std::string(headers) +
          "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body));
  }

  void upgrade(std::string_view headers) override {
    readRequest();
    bytes(
        "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
        "Sec-WebSocket-Accept: " +
        acceptance(key_) + "\r\n" + std::string(headers) + "\r\n");
  }

  void bytes(std::string_view raw) override {
    if (shared_.tls && !tls_) handshake();
    while (!raw.empty()) {
      auto const count = tls_ ? SSL_write(tls_, raw.data(), static_cast<int>(raw.size()))
                              : ::send(descriptor_, raw.data(), raw.size(), MSG_NOSIGNAL);
      if (count > 0) {
        raw.remove_prefix(static_cast<std::size_t>(count));
      } else {
        await(static_cast<int>(count), POLLOUT);
      }
    }
  }

  void waitForMessages(std::size_t count) override {
    readUntil([count](auto const& connection) { return connection.messageCount >= count; });
  }

  void waitForText(std::string_view part) override {
    readUntil([part](auto const& connection) {
      for (auto const& [isText, bytes] : connection.messages) {
        if (isText && bytes.find(part) != std::string::npos) return true;
      }
      return false;
    });
  }

  void waitForPong() override {
    readUntil([](auto const& connection) { return !connection.pongs.empty(); });
  }

  void waitForClose() override {
    readUntil([](auto const& connection) { return connection.closeFrameCame; });
  }

  void serve() override {
    readUntil([](auto const&) { return false; });
  }

  void waitForBytes(std::size_t count) override {
    for (auto const size = buffer_.size() + count; buffer_.size() < size;) readSome();
  }

  void waitForRelease() override {
    std::unique_lock lock(shared_.mutex);
    shared_.changed.wait(lock, [this] { return shared_.stopping || shared_.releases > 0; });
    if (shared_.stopping) throw Ended();
    --shared_.releases;
  }

  void finish() override {
    shutdown(descriptor_, SHUT_WR);
    // What is not read when the descriptor closes would make the end a reset.
    std::array<char, 4096> block{};
    while (true) {
      auto const count = recv(descriptor_, block.data(), block.size(), 0);
      if (count == 0 || (count < 0 && errno != EAGAIN)) throw Ended();
      if (count < 0) pollFor(POLLIN);
    }
  }

  void reset() override {
    linger const none{.l_onoff = 1, .l_linger = 0};
    setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &none, sizeof none);
    ::close(descriptor_);
    descriptor_ = -1;
    throw Ended();
  }

  void hang() override {
    while ((pollFor(POLLRDHUP) & (POLLRDHUP | POLLHUP | POLLERR)) == 0) {
    }
    throw Ended();
  }

 private:
  template <class Change>
  void update(Change change) {
    std::lock_guard const lock(shared_.mutex);
    change(shared_.connections[number_]);
    shared_.changed.notify_all();
  }

  template <class Keep>
  void readHead(Keep keep) {
    while (buffer_.find("\r\n\r\n") == std::string::npos) readSome();
    auto const end = buffer_.find("\r\n\r\n") + 4;
    auto const line = buffer_.find("\r\n") + 2;
    update([&](auto& connection) {
      keep(connection, buffer_.substr(0, buffer_.find(" HTTP/")),
           buffer_.substr(line, end - 2 - line));
    });
    buffer_.erase(0, end);
  }

  void handshake() {
    tls_ = SSL_new(shared_.tls);
    SSL_set_fd(tls_, descriptor_);
    int result = 0;
    while ((result = SSL_accept(tls_)) != 1) await(result, POLLIN);
  }

  /// Polls until one of `events`, or the end of the connection, is there. What is there is given.
  int pollFor(int events) {
    pollfd entry{descriptor_, static_cast<short>(events), 0};
    while (!shared_.stopping) {
      if (poll(&entry, 1, 20) > 0) return entry.revents;
    }
    throw Ended();
  }

  /// Waits after an operation that gave `result` until it can be tried again.
  void await(int result, int events) {
    if (!tls_) {
      if (result == 0 || errno != EAGAIN) throw Ended();
    } else {
      int const error = SSL_get_error(tls_, result);
      ERR_clear_error();
      if (error != SSL_ERROR_WANT_READ && error != SSL_ERROR_WANT_WRITE) throw Ended();
      events = error == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT;
    }
    pollFor(events);
  }

  void readSome() {
    std::array<char, 16384> block{};
    while (true) {
      auto const count = tls_ ? SSL_read(tls_, block.data(), static_cast<int>(block.size()))
                              : recv(descriptor_, block.data(), block.size(), 0);
      if (count > 0) {
        buffer_.append(block.data(), static_cast<std::size_t>(count));
        return;
      }
      await(static_cast<int>(count), POLLIN);
    }
  }

  template <class Predicate>
  void readUntil(Predicate predicate) {
    while (true) {
      bool isDone = false;
      update([&](auto const& connection) { isDone = predicate(connection); });
      if (isDone) return;
      if (closed_) throw Ended();
      auto frame = WebSocketFrame::take(buffer_);
      if (frame) {
        take(std::move(*frame));
      } else {
        readSome();
      }
    }
  }

  void take(WebSocketFrame frame) {
    switch (frame.opcode) {
      case WebSocketFrame::ping:
        return bytes(WebSocketFrame{WebSocketFrame::pong, frame.payload}.bytes());
      case WebSocketFrame::pong:
        return update([&](auto& connection) { connection.pongs.push_back(frame.payload); });
      case WebSocketFrame::close:
        closed_ = true;
        update([&](auto& connection) {
          connection.closeFrameCame = true;
          if (frame.payload.size() < 2) return;
          connection.closeCode = static_cast<unsigned char>(frame.payload[0]) << 8U |
                                 static_cast<unsigned char>(frame.payload[1]);
          connection.closeReason = frame.payload.substr(2);
        });
        return bytes(WebSocketFrame{WebSocketFrame::close, frame.payload}.bytes());
      default:
        return takeData(std::move(frame));
    }
  }

  void takeData(WebSocketFrame frame) {
    if (frame.opcode != WebSocketFrame::continuation) {
      message_ = {.isText = frame.opcode == WebSocketFrame::text, .bytes = {}};
    }
    message_.bytes += frame.payload;
    if (!frame.isFinal) return;
    if (!message_.isText && shared_.onBinary) shared_.onBinary(message_.bytes);
    update([&](auto& connection) {
      ++connection.messageCount;
      if (!message_.isText) connection.binaryBytes += message_.bytes.size();
      if (message_.isText || shared_.keepsBinaryMessages)
        connection.messages.push_back(std::move(message_));
    });
  }

  WebSocketServerShared& shared_;
  int descriptor_;
  std::size_t number_;
  SSL* tls_ = nullptr;
  std::string buffer_;
  std::string key_;
  WebSocketConnection::Message message_ = {};
  bool requested_ = false;
  bool closed_ = false;
};

}  // namespace

void WebSocketPeer::fragments(std::initializer_list<std::string_view> parts) {
  for (auto const* part = parts.begin(); part != parts.end(); ++part) {
    frame({.opcode = part == parts.begin() ? WebSocketFrame::text : WebSocketFrame::continuation,
           .payload = std::string(*part),
           .isFinal = part + 1 == parts.end()});
  }
}

void WebSocketPeer::close(int code, std::string_view reason) {
  frame({WebSocketFrame::close, closePayload(code, reason)});
}

void runWebSocketScript(WebSocketServerShared& shared, int descriptor, std::size_t number,
                        WebSocketScript const& script) {
  Peer peer(shared, descriptor, number);
  try {
    script(peer);
    peer.serve();
  } catch (Ended const&) {
    return;
  }
}

}  // namespace vek::test
