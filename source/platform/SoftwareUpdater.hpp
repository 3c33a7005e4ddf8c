// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/SoftwareUpdaterDelegate.hpp"
#include "platform/StandardUserDriver.hpp"
#include "platform/UpdateFeed.hpp"
#include "platform/UpdateSettings.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {

class Timer;

/// Finds out whether there is a newer version, on demand and by itself. It downloads nothing: the
/// user gets an update from its page, or from the system's package manager. For the main thread,
/// but for the settings.
class SoftwareUpdater : public std::enable_shared_from_this<SoftwareUpdater> {
 public:
  /// Between two checks of its own, and how far apart those of different users are spread.
  struct Schedule {
    std::chrono::milliseconds interval = std::chrono::hours(24);
    std::chrono::milliseconds jitter = std::chrono::hours(1);
    /// From the start, which is busy enough, to the first check.
    std::chrono::milliseconds leastDelay = std::chrono::minutes(1);
    /// At least, after a check that failed.
    std::chrono::milliseconds retryDelay = std::chrono::hours(1);
    /// It looks this often whether a check is due: a wait in one piece would leave out the time
    /// that the machine sleeps.
    std::chrono::milliseconds longestWait = std::chrono::minutes(15);

    /// One whose waits are in proportion to the interval.
    static Schedule every(std::chrono::milliseconds interval);
  };

  /// What it stands on.
  struct Parts {
    std::function<Task<UpdateFeed::Release>()> latest;
    UpdateSettings settings;
    std::string installedVersion;
    std::string packageManager = {};
    /// Without a feed there is nothing that it could look for by itself.
    bool hasFeed = true;
    Schedule schedule = {};
    /// How long the machine has been on, asleep or not.
    std::function<std::chrono::milliseconds()> uptime = SoftwareUpdater::uptime;

    /// Those of this process.
    static Parts live();
  };

  /// Driver and delegate outlive the updater.
  SoftwareUpdater(Parts parts, StandardUserDriver& driver, SoftwareUpdaterDelegate& delegate);
  SoftwareUpdater(SoftwareUpdater const&) = delete;
  SoftwareUpdater& operator=(SoftwareUpdater const&) = delete;
  ~SoftwareUpdater();

  /// Begins to check by itself.
  void start();
  /// A check that the user waits for.
  void checkForUpdates();

  [[nodiscard]] bool automaticallyChecksForUpdates() const;
  void setAutomaticallyChecksForUpdates(bool checks);
  [[nodiscard]] bool automaticallyDownloadsUpdates() const;
  void setAutomaticallyDownloadsUpdates(bool downloads);

 private:
  enum class Session { none, checking, showing };

  static std::chrono::milliseconds uptime();

  void scheduleNextCheck();
  void awaitNextCheck();
  void checkInBackground();
  void begin(UserUpdateState state);
  void cancel();
  static Task<> check(std::weak_ptr<SoftwareUpdater> weak);
  void finish(Result<UpdateFeed::Release> const& result);
  void offer(UpdateItem const& item);

  /// Throws UpdateError for a list that is older than one seen before.
  void rememberSerial(UpdateFeed::Release const& release) const;

  Parts parts_;
  StandardUserDriver& driver_;
  SoftwareUpdaterDelegate& delegate_;
  std::unique_ptr<Timer> timer_;
  bool isStarted_ = false;
  bool hasFailed_ = false;
  /// The uptime of the next check.
  std::chrono::milliseconds due_{0};
  Session session_ = Session::none;
  UserUpdateState state_;
  TaskHandle check_;
};

}  // namespace vek
