// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/HTTPClient.hpp"
#include "runtime/Result.hpp"

namespace vek {

/// One exchange from the moment it may use a connection. Belongs to the client's thread, which
/// drives the handle.
class HTTPTransfer {
 public:
  HTTPTransfer(HTTPRequest request, HTTPClient::Options const& options);
  HTTPTransfer(HTTPTransfer const&) = delete;
  HTTPTransfer& operator=(HTTPTransfer const&) = delete;
  ~HTTPTransfer();

  /// The handle of the transport's library.
  [[nodiscard]] void* handle() const { return handle_; }

  /// The answer, once the library has ended the exchange with `code`.
  [[nodiscard]] Result<HTTPResponse> outcome(int code);

  /// Whether the connection that was used carries many exchanges at a time.
  [[nodiscard]] bool wasMultiplexed() const;

  /// The client's own number of the exchange.
  std::uint64_t id = 0;

 private:
  struct Callbacks;

  void setMethodAndBody();
  void setHeaders();
  void setTrust();

  HTTPRequest request_;
  HTTPClient::Options const& options_;
  HTTPResponse response_;
  bool bodyTooLarge_ = false;
  void* handle_;
  void* headerList_ = nullptr;
  std::array<char, 256> errorText_{};
};

}  // namespace vek
