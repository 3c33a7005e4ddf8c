// SPDX-License-Identifier: MIT
#include "platform/GLibThread.hpp"

#include <glib.h>
#include <pthread.h>

#include <utility>

namespace vek {

GLibThread::GLibThread(std::string label)
    : context_(g_main_context_new()), thread_([this, name = label.substr(0, 15)] { run(name); }) {}

GLibThread::~GLibThread() {
  {
    std::lock_guard const lock(mutex_);
    stopping_ = true;
  }
  g_main_context_wakeup(context_);
  thread_.join();
  g_main_context_unref(context_);
}

void GLibThread::post(UniqueFunction<void()> work) {
  {
    std::lock_guard const lock(mutex_);
    work_.push_back(std::move(work));
  }
  g_main_context_wakeup(context_);
}

void GLibThread::run(std::string const& label) {
  pthread_setname_np(pthread_self(), label.c_str());
  g_main_context_push_thread_default(context_);
  // A wake-up that comes before the wait ends it as well.
  while (runPosted()) g_main_context_iteration(context_, TRUE);
  // What still waits here would hold the context, and itself, for ever.
  while (g_main_context_iteration(context_, FALSE)) continue;
  g_main_context_pop_thread_default(context_);
}

bool GLibThread::runPosted() {
  std::unique_lock lock(mutex_);
  while (!work_.empty()) {
    auto work = std::move(work_.front());
    work_.pop_front();
    lock.unlock();
    work();
    work = nullptr;
    lock.lock();
  }
  return !stopping_;
}

}  // namespace vek
