// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <thread>

namespace boost::asio {
class io_context;
}

namespace vek {

/// The thread of all WebSockets. It begins at its first use and ends before the process's static
/// objects go; work that is left then is never done.
class NetworkThread {
 public:
  static NetworkThread& shared();

  NetworkThread(NetworkThread const&) = delete;
  NetworkThread& operator=(NetworkThread const&) = delete;

  boost::asio::io_context& loop() { return *loop_; }

 private:
  NetworkThread();
  ~NetworkThread();
  void stop();

  std::unique_ptr<boost::asio::io_context> loop_;
  std::thread thread_;
};

}  // namespace vek
