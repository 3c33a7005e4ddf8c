// SPDX-License-Identifier: MIT
#include "platform/SoftwareUpdater.hpp"

#include <fmt/format.h>
#include <time.h>

#include <algorithm>
#include <random>
#include <utility>

#include "platform/Bundle.hpp"
#include "platform/Deployment.hpp"
#include "platform/Log.hpp"
#include "platform/Timer.hpp"
#include "platform/UpdateError.hpp"
#include "runtime/MainQueue.hpp"

namespace vek {
namespace {

using std::chrono::milliseconds;

Logger const& logger() {
  static auto const* const instance = new Logger("Updater");
  return *instance;
}

milliseconds upTo(milliseconds most) {
  std::random_device source;
  return milliseconds(std::uniform_int_distribution<milliseconds::rep>(0, most.count())(source));
}

bool isNewer(Version const& version, std::string const& installed) {
  auto const present = Version::parse(installed);
  return present && version > *present;
}

}  // namespace

SoftwareUpdater::Schedule SoftwareUpdater::Schedule::every(milliseconds interval) {
  Schedule schedule{.interval = interval, .jitter = interval / 24};
  schedule.leastDelay = std::min(schedule.leastDelay, interval);
  schedule.retryDelay = std::min(schedule.retryDelay, interval);
  return schedule;
}

SoftwareUpdater::Parts SoftwareUpdater::Parts::live() {
  auto const values = deployment();
  return {.latest = [feed = UpdateFeed(HTTPClient::shared(), values.updateFeedURL,
                                       values.updatePublicKey)] { return feed.latest(); },
          .settings = UpdateSettings(UserDefaults::standard()),
          .installedVersion = Bundle::main().version,
          .packageManager = values.packageManager,
          .hasFeed = !values.updateFeedURL.empty(),
          .schedule = Schedule::every(values.updateInterval)};
}

SoftwareUpdater::SoftwareUpdater(Parts parts, StandardUserDriver& driver,
                                 SoftwareUpdaterDelegate& delegate)
    : parts_(std::move(parts)), driver_(driver), delegate_(delegate) {}

milliseconds SoftwareUpdater::uptime() {
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return std::chrono::duration_cast<milliseconds>(std::chrono::seconds(now.tv_sec) +
                                                  std::chrono::nanoseconds(now.tv_nsec));
}

SoftwareUpdater::~SoftwareUpdater() {
  check_.cancel();
}

void SoftwareUpdater::start() {
  isStarted_ = true;
  scheduleNextCheck();
}

void SoftwareUpdater::scheduleNextCheck() {
  timer_.reset();
  if (!isStarted_ || !parts_.hasFeed || !automaticallyChecksForUpdates()) return;
  auto const passed = std::chrono::duration_cast<milliseconds>(std::chrono::system_clock::now() -
                                                               parts_.settings.lastCheck());
  auto const& schedule = parts_.schedule;
  // A check that lies in the future was none: the clock was wrong then.
  auto const left = passed.count() < 0 ? milliseconds(0) : schedule.interval - passed;
  auto const least = hasFailed_ ? schedule.retryDelay : schedule.leastDelay;
  auto const delay = std::max(left, least) + upTo(schedule.jitter);
  delegate_.updaterWillScheduleUpdateCheckAfterDelay(delay);
  due_ = parts_.uptime() + delay;
  awaitNextCheck();
}

void SoftwareUpdater::awaitNextCheck() {
  auto const wait = std::min(due_ - parts_.uptime(), parts_.schedule.longestWait);
  timer_ = std::make_unique<Timer>(wait, [weak = weak_from_this()] {
    MainQueue::shared().post([weak] {
      if (auto const self = weak.lock()) self->checkInBackground();
    });
  });
}

void SoftwareUpdater::checkInBackground() {
  if (parts_.uptime() < due_) return awaitNextCheck();
  // Another program of the user's, or the user, may have been there first.
  if (session_ == Session::none && automaticallyChecksForUpdates()) {
    begin({.userInitiated = false});
  } else {
    scheduleNextCheck();
  }
}

void SoftwareUpdater::checkForUpdates() {
  if (session_ == Session::showing) return driver_.showUpdateInFocus();
  bool const isWaitedFor = session_ == Session::checking && state_.userInitiated;
  if (isWaitedFor) return driver_.showUpdateInFocus();
  if (session_ == Session::none) begin({.userInitiated = true});
  state_.userInitiated = true;
  driver_.showUserInitiatedUpdateCheck([weak = weak_from_this()] {
    if (auto const self = weak.lock()) self->cancel();
  });
}

void SoftwareUpdater::begin(UserUpdateState state) {
  session_ = Session::checking;
  state_ = state;
  check_ = spawn(MainQueue::shared(), check(weak_from_this()));
}

void SoftwareUpdater::cancel() {
  if (session_ != Session::checking) return;
  session_ = Session::none;
  check_.cancel();
  scheduleNextCheck();
}

Task<> SoftwareUpdater::check(std::weak_ptr<SoftwareUpdater> weak) {
  auto self = weak.lock();
  if (!self) co_return;
  auto latest = self->parts_.latest();
  self = nullptr;
  auto const result = co_await attempt(std::move(latest));
  self = weak.lock();
  // One that was cancelled is over already.
  if (self && !Environment::isCancelled()) self->finish(result);
}

void SoftwareUpdater::finish(Result<UpdateFeed::Release> const& result) {
  session_ = Session::none;
  try {
    auto const& release = result.value();
    rememberSerial(release);
    hasFailed_ = false;
    parts_.settings.setLastCheck(std::chrono::system_clock::now());
    if (!isNewer(release.item.version, parts_.installedVersion)) {
      if (state_.userInitiated) driver_.showUpdateNotFound(parts_.installedVersion);
    } else if (state_.userInitiated ||
               release.item.version.text() != parts_.settings.skippedVersion()) {
      offer(release.item);
    }
  } catch (UpdateError const& error) {
    hasFailed_ = true;
    logger().error(fmt::format("The check for updates failed: {}", error.what()));
    if (state_.userInitiated) driver_.showUpdaterError(error);
  }
  scheduleNextCheck();
}

void SoftwareUpdater::offer(UpdateItem const& item) {
  session_ = Session::showing;
  auto const choose = [weak = weak_from_this(),
                       version = item.version.text()](UpdateChoice choice) {
    auto const self = weak.lock();
    if (!self) return;
    self->session_ = Session::none;
    if (choice == UpdateChoice::skip) self->parts_.settings.setSkippedVersion(version);
  };
  driver_.showUpdateFound({.item = item,
                           .installedVersion = parts_.installedVersion,
                           .packageManager = parts_.packageManager,
                           .choose = choose},
                          state_);
}

void SoftwareUpdater::rememberSerial(UpdateFeed::Release const& release) const {
  auto const latest = parts_.settings.latestSerial(release.publisher);
  if (release.serial < latest) throw UpdateError(UpdateError::Code::outdated);
  if (release.serial > latest) parts_.settings.setLatestSerial(release.publisher, release.serial);
}

bool SoftwareUpdater::automaticallyChecksForUpdates() const {
  return parts_.settings.automaticallyChecksForUpdates();
}

void SoftwareUpdater::setAutomaticallyChecksForUpdates(bool checks) {
  parts_.settings.setAutomaticallyChecksForUpdates(checks);
  MainQueue::shared().runOrPost([weak = weak_from_this()] {
    if (auto const self = weak.lock()) self->scheduleNextCheck();
  });
}

bool SoftwareUpdater::automaticallyDownloadsUpdates() const {
  return parts_.settings.automaticallyDownloadsUpdates();
}

void SoftwareUpdater::setAutomaticallyDownloadsUpdates(bool downloads) {
  parts_.settings.setAutomaticallyDownloadsUpdates(downloads);
}

}  // namespace vek
