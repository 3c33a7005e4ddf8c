// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "runtime/TaskHandle.hpp"

namespace vek {

/// The tasks that one send started. It grows while they run, since what their own sends start
/// joins it. Main thread only.
class TaskList {
 public:
  void add(TaskHandle task) { add(Entry{std::move(task), nullptr}); }
  void add(std::shared_ptr<TaskList> tasks) { add(Entry{{}, std::move(tasks)}); }

  /// How many it holds, those that ended a short while ago included.
  [[nodiscard]] std::size_t size() const { return entries_.size(); }

  [[nodiscard]] bool isDone() const {
    return std::all_of(entries_.begin(), entries_.end(), isOver);
  }

  /// Cancels all, those included that joined since.
  void cancel() const {
    // A copy: what is cancelled may add to the list.
    for (auto const& entry : std::vector<Entry>(entries_)) entry.cancel();
  }

  static Task<> wait(std::shared_ptr<TaskList> list) {
    // From the back: what has ended is dropped without moving the rest.
    while (true) {
      while (!list->entries_.empty() && list->entries_.back().isDone()) list->entries_.pop_back();
      if (list->entries_.empty()) co_return;
      auto const entry = list->entries_.back();
      co_await (entry.tasks ? wait(entry.tasks) : entry.task.wait());
    }
  }

 private:
  struct Entry {
    TaskHandle task;
    std::shared_ptr<TaskList> tasks;

    [[nodiscard]] bool isDone() const { return tasks ? tasks->isDone() : task.isDone(); }
    void cancel() const { tasks ? tasks->cancel() : task.cancel(); }
  };

  void add(Entry entry) {
    // An effect that runs for hours would else collect all that it ever started.
    if (entries_.size() >= compactAt_) {
      std::erase_if(entries_, isOver);
      compactAt_ = std::max<std::size_t>(16, 2 * entries_.size());
    }
    entries_.push_back(std::move(entry));
  }

  static bool isOver(Entry const& entry) { return entry.isDone(); }

  std::vector<Entry> entries_;
  std::size_t compactAt_ = 16;
};

/// What a send returns: the effects that it started, if any, to be awaited or cancelled.
class StoreTask {
 public:
  StoreTask() = default;
  explicit StoreTask(std::shared_ptr<TaskList> tasks) : tasks_(std::move(tasks)) {}

  explicit operator bool() const { return tasks_ != nullptr; }

  /// Ends when all effects of the send have ended, those included that their actions started.
  [[nodiscard]] Task<> finish() const {
    auto const tasks = tasks_;
    if (tasks) co_await TaskList::wait(tasks);
  }

  void cancel() const {
    if (tasks_) tasks_->cancel();
  }

  [[nodiscard]] std::shared_ptr<TaskList> const& tasks() const { return tasks_; }

 private:
  std::shared_ptr<TaskList> tasks_;
};

}  // namespace vek
