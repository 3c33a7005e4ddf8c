// SPDX-License-Identifier: MIT
#include "platform/NetworkThread.hpp"

#include <pthread.h>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <csignal>

#include "platform/OpenSSLLifetime.hpp"

namespace vek {

NetworkThread& NetworkThread::shared() {
  // The loop itself stays: sockets that outlive the thread still refer to it, and its own thread,
  // which looks up names, cannot be stopped.
  static auto* const instance = new NetworkThread;
  static struct Stop {
    ~Stop() { instance->stop(); }
  } const stop;
  return *instance;
}

NetworkThread::NetworkThread() : loop_(std::make_unique<boost::asio::io_context>(1)) {
  thread_ = std::thread([this] {
    pthread_setname_np(pthread_self(), "websocket");
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);  // they are the main thread's
    auto const work = boost::asio::make_work_guard(*loop_);
    loop_->run();
  });
}

NetworkThread::~NetworkThread() = default;

void NetworkThread::stop() {
  // After what is already posted, such as the close frame of a socket that has just been left.
  boost::asio::post(*loop_, [this] { loop_->stop(); });
  thread_.join();
}

}  // namespace vek
