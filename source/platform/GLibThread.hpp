// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include "runtime/Executor.hpp"

struct _GMainContext;

namespace vek {

/// A thread for a library that is used from one thread and calls back through GLib's main context,
/// which is this thread's own. Runs what is posted in order; what still waits when it goes is run.
class GLibThread final : public Executor {
 public:
  /// `label` names the thread in debuggers, of which the system keeps 15 characters.
  explicit GLibThread(std::string label);
  ~GLibThread() override;

  void post(UniqueFunction<void()> work) override;

 private:
  void run(std::string const& label);
  /// Whether it is to go on, with what is posted run.
  bool runPosted();

  _GMainContext* context_;
  std::mutex mutex_;
  std::deque<UniqueFunction<void()>> work_;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace vek
