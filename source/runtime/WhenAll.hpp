// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "runtime/TaskHandle.hpp"
#include "runtime/Uncancelled.hpp"

namespace vek {

namespace detail {

/// What the tasks of one `whenAll` share. The first error stops the others.
struct Together {
  std::atomic<std::size_t> running;
  std::stop_source stop;
  std::mutex mutex;
  std::exception_ptr error;
  std::optional<Completion<bool>> ended;

  void fail(std::exception_ptr failure) {
    {
      std::lock_guard lock(mutex);
      if (!error || (isCancellation(error) && !isCancellation(failure))) error = std::move(failure);
    }
    stop.request_stop();
  }

  void end() {
    if (running.fetch_sub(1) == 1) ended->resolve(true);
  }
};

template <class T, class Place>
Task<> runTogether(Task<T> task, Place place, std::shared_ptr<Together> together) {
  auto outcome = co_await attempt(withStop(together->stop.get_token(), std::move(task)));
  if (!outcome) {
    together->fail(outcome.error());
  } else if constexpr (!std::is_void_v<T>) {
    place->emplace(std::move(outcome).value());
  }
  together->end();
}

/// Starts `tasks` on the current executor and ends when all have ended.
inline Task<> runAll(std::vector<Task<>> tasks, std::shared_ptr<Together> together) {
  auto const* environment = Environment::current();
  std::stop_callback const outer(environment->stopToken, [&] { together->stop.request_stop(); });
  if (!tasks.empty()) {
    co_await uncancelled<bool>([&](Completion<bool> ended) {
      together->ended.emplace(std::move(ended));
      for (auto& task : tasks) {
        spawn(*environment->executor, std::move(task), environment->dependencies);
      }
    });
  }
  if (together->error) std::rethrow_exception(together->error);
}

inline std::shared_ptr<Together> together(std::size_t count) {
  auto result = std::make_shared<Together>();
  result->running = count;
  return result;
}

}  // namespace detail

/// Runs all `tasks` at the same time and gives their values in the same order. When one fails, the
/// others are told to stop and waited for, and the first error is thrown: the first that is no
/// cancellation, if there is one.
template <class T>
Task<std::vector<T>> whenAll(std::vector<Task<T>> tasks) {
  auto together = detail::together(tasks.size());
  std::vector<std::optional<T>> places(tasks.size());
  std::vector<Task<>> all;
  all.reserve(tasks.size());
  for (std::size_t i = 0; i < tasks.size(); ++i) {
    all.push_back(detail::runTogether(std::move(tasks[i]), &places[i], together));
  }
  co_await detail::runAll(std::move(all), together);
  std::vector<T> values;
  values.reserve(places.size());
  for (auto& place : places) values.push_back(std::move(*place));
  co_return values;
}

/// The same for tasks without a value.
inline Task<> whenAll(std::vector<Task<>> tasks) {
  auto together = detail::together(tasks.size());
  std::vector<Task<>> all;
  all.reserve(tasks.size());
  for (auto& task : tasks) {
    all.push_back(detail::runTogether(std::move(task), nullptr, together));
  }
  co_await detail::runAll(std::move(all), together);
}

/// The same for two tasks of different types.
template <class A, class B>
Task<std::pair<A, B>> whenAll(Task<A> first, Task<B> second) {
  auto together = detail::together(2);
  std::optional<A> a;
  std::optional<B> b;
  std::vector<Task<>> all;
  all.push_back(detail::runTogether(std::move(first), &a, together));
  all.push_back(detail::runTogether(std::move(second), &b, together));
  co_await detail::runAll(std::move(all), together);
  co_return std::pair<A, B>(std::move(*a), std::move(*b));
}

}  // namespace vek
