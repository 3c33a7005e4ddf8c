// SPDX-License-Identifier: MIT
#include "app/Signals.hpp"

#include <pthread.h>
#include <unistd.h>

#include <csignal>

#include "runtime/MainQueue.hpp"

namespace vek {

namespace {

constexpr int endsTheThread = SIGUSR1;
constexpr int endsTheProcess = 3;
constexpr int interruptedStatus = 130;

sigset_t watched() {
  sigset_t set;
  sigemptyset(&set);
  for (int const signal : {SIGINT, SIGTERM, endsTheThread}) sigaddset(&set, signal);
  // That the terminal is closed ends a recording as Ctrl-C does, but not one under nohup.
  struct sigaction hangUp{};
  sigaction(SIGHUP, nullptr, &hangUp);
  if (hangUp.sa_handler != SIG_IGN) sigaddset(&set, SIGHUP);
  return set;
}

}  // namespace

Signals::Signals() {
  auto const set = watched();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  // Writing to a pipe that nobody reads any more is an error of that write, not the program's end.
  std::signal(SIGPIPE, SIG_IGN);
  MainQueue::shared();
  thread_ = std::thread([this, set] {
    for (int count = 1;; ++count) {
      int signal = 0;
      sigwait(&set, &signal);
      if (signal == endsTheThread) return;
      if (count == endsTheProcess) _exit(interruptedStatus);
      MainQueue::shared().post([this, count] {
        if (handler_) handler_(count);
      });
    }
  });
}

Signals::~Signals() {
  pthread_kill(thread_.native_handle(), endsTheThread);
  thread_.join();
}

}  // namespace vek
