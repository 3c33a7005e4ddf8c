// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <compare>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "runtime/UUID.hpp"
#include "services/support/UserID.hpp"

namespace vek::services {

/// Has analyses of stored texts made by somebody who is slow at it: a few at a time, in the order
/// they were asked for, and one for all who ask for the same.
///
/// Whoever asks waits for it as long as there is patience, which begins with the first of a burst
/// and is for the whole of it: the texts of a long list come after that time at the latest, however
/// long their analyses take. Those go on being made.
class AnalysisQueue {
 public:
  using Clock = std::chrono::steady_clock;

  /// A text as it is now. Texts only grow, so the size tells which one is meant.
  struct Text {
    UUID transcript = {};
    std::size_t size = 0;
    UserID user = {};
    auto operator<=>(Text const&) const = default;
  };
  /// Takes the analysis; nothing where it failed or did not come in time. Any thread.
  using Waiter = std::function<void(std::optional<std::string>)>;
  /// Begins one and calls the waiter when it has ended. On a thread of the queue.
  using Make = std::function<void(Text, Waiter)>;

  /// How many are made at a time.
  static constexpr std::size_t atOnce = 8;
  /// Beyond so many that have not begun, analyses are not made.
  static constexpr std::size_t longest = 16'384;

  /// The patience leaves a client, which gives up after a minute, time for its answer.
  explicit AnalysisQueue(Make make, Clock::duration patience = std::chrono::seconds(15));
  AnalysisQueue(AnalysisQueue const&) = delete;
  AnalysisQueue& operator=(AnalysisQueue const&) = delete;
  /// Stops.
  ~AnalysisQueue();

  /// Any thread.
  void ask(Text const& text, Waiter waiter);

  /// Answers all who wait and begins no more. Those under way may end later.
  void stop();

 private:
  void run();
  void didMake(Text const& text, std::optional<std::string> const& analysis);
  std::vector<Waiter> takeWaiters();

  Make const make_;
  Clock::duration const patience_;
  std::mutex mutex_;
  std::condition_variable wake_;
  /// Who waits for each that is wanted or under way.
  std::map<Text, std::vector<Waiter>> asked_;
  /// Those that have not begun.
  std::deque<Text> wanted_;
  std::size_t underWay_ = 0;
  /// When patience with the present burst ends; nothing once it has.
  std::optional<Clock::time_point> patienceEnds_;
  bool isStopped_ = false;
  std::thread thread_;
};

}  // namespace vek::services
