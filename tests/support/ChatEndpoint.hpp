// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vek::test {

/// A chat-completions endpoint over plain HTTP that answers each request as it is told to.
class ChatEndpoint {
 public:
  /// Throws std::runtime_error where it cannot listen.
  ChatEndpoint();
  ChatEndpoint(ChatEndpoint const&) = delete;
  ChatEndpoint& operator=(ChatEndpoint const&) = delete;
  ~ChatEndpoint();

  [[nodiscard]] std::string url() const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/v1/chat/completions";
  }
  void answer(int status, std::string body);
  /// The last request as it came.
  std::string request();

  std::atomic<int> count = 0;
  std::atomic<bool> isSilent = false;

 private:
  void serve();

  int listener_;
  int port_ = 0;
  std::mutex mutex_;
  int status_ = 200;
  std::string body_;
  std::string request_;
  std::vector<int> silent_;
  std::thread thread_;
};

}  // namespace vek::test
