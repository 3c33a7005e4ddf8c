// SPDX-License-Identifier: MIT
#include "services/backend/AnalysisQueue.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vek::services {

AnalysisQueue::AnalysisQueue(Make make, Clock::duration patience)
    : make_(std::move(make)), patience_(patience), thread_([this] { run(); }) {}

AnalysisQueue::~AnalysisQueue() {
  stop();
}

void AnalysisQueue::ask(Text const& text, Waiter waiter) {
  {
    std::lock_guard lock(mutex_);
    if (asked_.empty()) patienceEnds_ = Clock::now() + patience_;
    bool const isNew = !asked_.contains(text);
    bool const isTaken = !isStopped_ && (!isNew || wanted_.size() < longest);
    if (isTaken) {
      if (isNew) wanted_.push_back(text);
      auto& waiters = asked_[text];
      wake_.notify_one();
      if (patienceEnds_) return waiters.push_back(std::move(waiter));
    }
  }
  waiter(std::nullopt);
}

void AnalysisQueue::stop() {
  std::vector<Waiter> waiters;
  {
    std::lock_guard lock(mutex_);
    isStopped_ = true;
    waiters = takeWaiters();
    wake_.notify_one();
  }
  for (auto const& waiter : waiters) waiter(std::nullopt);
  if (thread_.joinable()) thread_.join();
}

void AnalysisQueue::run() {
  std::unique_lock lock(mutex_);
  while (!isStopped_) {
    if (patienceEnds_ && Clock::now() >= *patienceEnds_) {
      patienceEnds_.reset();
      auto const waiters = takeWaiters();
      lock.unlock();
      for (auto const& waiter : waiters) waiter(std::nullopt);
      lock.lock();
    } else if (!wanted_.empty() && underWay_ < atOnce) {
      auto const text = wanted_.front();
      wanted_.pop_front();
      ++underWay_;
      lock.unlock();
      make_(text, [this, text](std::optional<std::string> const& made) { didMake(text, made); });
      lock.lock();
    } else if (patienceEnds_) {
      wake_.wait_until(lock, *patienceEnds_);
    } else {
      wake_.wait(lock);
    }
  }
}

void AnalysisQueue::didMake(Text const& text, std::optional<std::string> const& analysis) {
  std::vector<Waiter> waiters;
  {
    std::lock_guard lock(mutex_);
    --underWay_;
    waiters = std::exchange(asked_[text], {});
    asked_.erase(text);
    // The burst is over.
    if (asked_.empty()) patienceEnds_.reset();
    wake_.notify_one();
  }
  for (auto const& waiter : waiters) waiter(analysis);
}

/// Those who wait now. What they wait for stays asked for.
std::vector<AnalysisQueue::Waiter> AnalysisQueue::takeWaiters() {
  std::vector<Waiter> result;
  for (auto& [text, waiters] : asked_) {
    std::ranges::move(std::exchange(waiters, {}), std::back_inserter(result));
  }
  return result;
}

}  // namespace vek::services
