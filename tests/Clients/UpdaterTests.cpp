// SPDX-License-Identifier: MIT
#include "Clients/UpdaterImpl.hpp"

#include <optional>

#include "Clients/UpdaterDelegateImpl.hpp"
#include "platform/UpdateError.hpp"
#include "runtime/CallbackOperation.hpp"
#include "runtime/SyncWait.hpp"
#include "support/RunMainQueue.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using test::runMainQueue;
using test::runMainQueueUntil;
using testing::ElementsAre;
using testing::IsEmpty;
using Calls = std::vector<std::string>;
using Release = UpdateFeed::Release;

UpdateFeed::Release release(std::string_view version, std::uint64_t serial = 1,
                            std::string publisher = "maker") {
  return {.item = {.version = Version::parse(version).value(),
                   .displayVersionString = "“" + std::string(version) + "”",
                   .notes = {},
                   .link = "https://vek.test"},
          .serial = serial,
          .publisher = std::move(publisher)};
}

/// A screen that shows nothing and keeps what it was to show.
struct Screen {
  Screen() {
    StandardUserDriver::setPresenter(
        {.isActive = [this] { return isActive; },
         .showChecking =
             [this](std::function<void()> stop) {
               shown.emplace_back("checking");
               cancel = std::move(stop);
             },
         .showUpdate =
             [this](UpdateOffer update) {
               shown.push_back("update " + update.item.version.text() +
                               (update.takesFocus ? " in focus" : ""));
               offer = std::move(update);
             },
         .showUpToDate = [this](std::string const& version) { shown.push_back("has " + version); },
         .showFailure = [this](UpdateError const& error) { shown.emplace_back(error.what()); },
         .showInFocus = [this] { shown.emplace_back("in focus"); }});
  }

  bool isActive = false;
  Calls shown;
  std::function<void()> cancel;
  UpdateOffer offer;
};

/// The updater of an installation of version 1.0, all of it but the feed, the screen and the
/// desktop.
class UpdaterTest : public testing::Test {
 protected:
  void TearDown() override {
    updater_ = {};
    controller_ = nullptr;
    runMainQueue();
  }

  void start(SoftwareUpdater::Schedule schedule = {}) {
    SoftwareUpdater::Parts parts{.latest = [this] { return latest(); },
                                 .settings = settings_,
                                 .installedVersion = "1.0",
                                 .packageManager = {},
                                 .hasFeed = hasFeed_,
                                 .schedule = schedule};
    controller_ = std::make_shared<StandardUpdaterController>(StartingUpdater::yes, delegate_,
                                                              delegate_, std::move(parts));
    updater_ = UpdaterImpl::client(controller_);
  }
  /// A check each few milliseconds.
  void startHasty() {
    start({.interval = 1ms, .jitter = 2ms, .leastDelay = 1ms, .retryDelay = 1ms});
  }

  void check() {
    syncWait(updater_.checkForUpdates());
    runMainQueue();
  }

  [[nodiscard]] bool isChecked(int times) {
    return runMainQueueUntil([&] { return checks_ >= times; }, 20s);
  }

  Task<Release> latest() {
    ++checks_;
    if (isHeld_) {
      co_await callbackOperation<bool>([this](Completion<bool> completion) { held_ = completion; });
    }
    if (failure_) throw *failure_;
    co_return latest_;
  }

  test::TemporaryFolder const folder_;
  UserDefaults defaults_{folder_ / "settings.json"};
  UpdateSettings const settings_{defaults_};
  Calls desktop_;
  UpdaterDelegate delegate_{
      {.requestAuthorization =
           [this](UserNotificationAuthorizationOptions options) {
             desktop_.push_back("ask " + std::to_string(static_cast<int>(options)));
           },
       .add =
           [this](NotificationRequest const& request) {
             EXPECT_EQ(request.content.interruptionLevel,
                       UserNotificationInterruptionLevel::active);
             desktop_.push_back(request.identifier + ": " + request.content.title + ": " +
                                request.content.body);
           },
       .removeDeliveredNotifications =
           [this](Calls const& identifiers) {
             for (auto const& each : identifiers) desktop_.push_back("remove " + each);
           }}};
  Screen screen_;
  bool hasFeed_ = true;
  Release latest_ = release("1.0");
  std::optional<UpdateError> failure_;
  bool isHeld_ = false;
  std::optional<Completion<bool>> held_;
  int checks_ = 0;
  std::shared_ptr<StandardUpdaterController> controller_;
  Updater updater_;
};

TEST_F(UpdaterTest, ACheckOfTheUsersShowsHowItEndsAndPostsNoNotification) {
  start();
  EXPECT_THAT(desktop_, ElementsAre("ask 4")) << "before the first notification";
  check();
  failure_.emplace(UpdateError::Code::badSignature);
  check();
  failure_.reset();
  latest_ = release("1.0.1");
  check();
  EXPECT_THAT(screen_.shown, ElementsAre("checking", "has 1.0", "checking",
                                         UpdateError(UpdateError::Code::badSignature).what(),
                                         "checking", "update 1.0.1 in focus"));
  screen_.offer.choose(UpdateChoice::later);
  for (auto const& call : desktop_) EXPECT_EQ(call, "ask 4");
}

TEST_F(UpdaterTest, TheScheduleShowsAnUpdateGentlyAndPostsOneNotification) {
  latest_ = release("1.1");
  startHasty();
  ASSERT_TRUE(isChecked(1));
  ASSERT_TRUE(runMainQueueUntil([&] { return !screen_.shown.empty(); }));
  EXPECT_THAT(screen_.shown, ElementsAre("update 1.1"));
  std::erase(desktop_, "ask 4");
  EXPECT_THAT(desktop_, ElementsAre("com.vek.app.update: A new update is available: "
                                    "Version “1.1” is now available"));
  // It stands until the user answers, however many checks would be due.
  EXPECT_FALSE(runMainQueueUntil([&] { return checks_ > 1; }, 50ms));
  check();
  EXPECT_EQ(screen_.shown.back(), "in focus");
  screen_.offer.didReceiveAttention();
  EXPECT_EQ(desktop_.back(), "remove com.vek.app.update");
  screen_.offer.choose(UpdateChoice::later);
  EXPECT_TRUE(isChecked(2));
  EXPECT_TRUE(runMainQueueUntil([&] { return screen_.shown.back() == "update 1.1"; }))
      << "later means later";
}

TEST_F(UpdaterTest, ItTakesTheFocusOfWhomItFindsInTheProgram) {
  screen_.isActive = true;
  latest_ = release("1.1");
  startHasty();
  ASSERT_TRUE(runMainQueueUntil([&] { return !screen_.shown.empty(); }, 20s));
  EXPECT_THAT(screen_.shown, ElementsAre("update 1.1 in focus"));
}

TEST_F(UpdaterTest, ASkippedVersionIsShownToThoseWhoAsk) {
  latest_ = release("1.1");
  start();
  check();
  screen_.offer.choose(UpdateChoice::skip);
  screen_.shown.clear();
  startHasty();
  EXPECT_TRUE(isChecked(4));
  EXPECT_THAT(screen_.shown, IsEmpty());
  check();
  EXPECT_EQ(screen_.shown.back(), "update 1.1 in focus");
  screen_.offer.choose(UpdateChoice::later);
  latest_ = release("1.2");
  EXPECT_TRUE(runMainQueueUntil([&] { return screen_.shown.back() == "update 1.2"; }, 20s));
}

TEST_F(UpdaterTest, AnOlderListThanTheLatestIsRefused) {
  start();
  latest_ = release("1.0", 5);
  check();
  latest_ = release("0.9", 4);
  check();
  EXPECT_EQ(screen_.shown.back(), UpdateError(UpdateError::Code::outdated).what());
  latest_ = release("1.1", 4);
  check();
  EXPECT_EQ(screen_.shown.back(), UpdateError(UpdateError::Code::outdated).what());
  latest_ = release("0.9", 5);
  check();
  EXPECT_EQ(screen_.shown.back(), "has 1.0") << "what is older is no update";
  latest_ = release("1.0", 900, "a trial");
  check();
  latest_ = release("1.0", 5);
  check();
  EXPECT_EQ(screen_.shown.back(), "has 1.0") << "the serial of another publisher is no measure";
}

TEST_F(UpdaterTest, FailuresOfTheScheduleAreSilent) {
  failure_.emplace(UpdateError::Code::unreachable);
  startHasty();
  EXPECT_TRUE(isChecked(3));
  EXPECT_THAT(screen_.shown, IsEmpty());
}

TEST_F(UpdaterTest, ACancelledCheckShowsNothingMore) {
  start();
  isHeld_ = true;
  latest_ = release("1.1");
  check();
  check();
  EXPECT_THAT(screen_.shown, ElementsAre("checking", "in focus")) << "one check at a time";
  screen_.cancel();
  held_->resolve(true);
  runMainQueue();
  EXPECT_EQ(screen_.shown.size(), 2U);
  isHeld_ = false;
  check();
  EXPECT_EQ(screen_.shown.back(), "update 1.1 in focus");
}

TEST_F(UpdaterTest, AUserWhoAsksDuringAScheduledCheckIsAnswered) {
  isHeld_ = true;
  startHasty();
  ASSERT_TRUE(isChecked(1));
  check();
  held_->resolve(true);
  runMainQueue();
  EXPECT_THAT(screen_.shown, ElementsAre("checking", "has 1.0"));
}

TEST_F(UpdaterTest, SettingsAreKeptAndTheScheduleKeepsToThem) {
  startHasty();
  EXPECT_TRUE(updater_.automaticallyChecksForUpdates());
  EXPECT_FALSE(updater_.automaticallyDownloadsUpdates());
  updater_.setAutomaticallyDownloadsUpdates(true);
  updater_.setAutomaticallyChecksForUpdates(false);
  runMainQueue();
  int const before = checks_;
  EXPECT_FALSE(runMainQueueUntil([&] { return checks_ > before; }, 50ms));
  startHasty();
  EXPECT_FALSE(updater_.automaticallyChecksForUpdates());
  EXPECT_TRUE(updater_.automaticallyDownloadsUpdates());
  updater_.setAutomaticallyChecksForUpdates(true);
  EXPECT_TRUE(isChecked(before + 1));
}

TEST_F(UpdaterTest, WithoutAFeedItNeverChecksByItself) {
  hasFeed_ = false;
  startHasty();
  EXPECT_FALSE(runMainQueueUntil([&] { return checks_ > 0; }, 50ms));
  EXPECT_THAT(desktop_, IsEmpty());
}

/// Keeps the delays that the updater tells of.
struct Delays : SoftwareUpdaterDelegate {
  void updaterWillScheduleUpdateCheckAfterDelay(std::chrono::milliseconds delay) override {
    all.push_back(delay);
  }
  std::vector<std::chrono::milliseconds> all;
};

TEST_F(UpdaterTest, ChecksAreADayApartAndSpreadOverAnHour) {
  Delays delays;
  auto const delayAfter = [&](Date lastCheck) {
    settings_.setLastCheck(lastCheck);
    StandardUpdaterController const controller(
        StartingUpdater::yes, delays, delegate_,
        {.latest = [this] { return latest(); }, .settings = settings_, .installedVersion = "1.0"});
    return delays.all.back();
  };
  auto const now = std::chrono::system_clock::now();
  auto const isWithin = [](std::chrono::milliseconds from) {
    return testing::AllOf(testing::Ge(from), testing::Le(from + 1h));
  };
  EXPECT_THAT(delayAfter(now), isWithin(24h - 1min));
  EXPECT_THAT(delayAfter(now - 10h), isWithin(14h - 1min));
  for (auto const due : {Date(), now - 24h, now - 1000h, now + 1000h}) {
    EXPECT_THAT(delayAfter(due), isWithin(1min));
  }
  delays.all.clear();
  for (int i = 0; i < 10; ++i) delayAfter(now - 24h);
  EXPECT_NE(*std::ranges::min_element(delays.all), *std::ranges::max_element(delays.all));
}

TEST_F(UpdaterTest, ACheckThatFailsIsMadeAgainSoonerThanTheNextDay) {
  Delays delays;
  StandardUpdaterController controller(
      StartingUpdater::yes, delays, delegate_,
      {.latest = [this] { return latest(); }, .settings = settings_, .installedVersion = "1.0"});
  failure_.emplace(UpdateError::Code::unreachable);
  controller.checkForUpdates();
  runMainQueue();
  EXPECT_THAT(delays.all.back(), testing::AllOf(testing::Ge(1h), testing::Le(2h)));
  failure_.reset();
  controller.checkForUpdates();
  runMainQueue();
  EXPECT_GE(delays.all.back(), 24h - 1min);
}

TEST_F(UpdaterTest, TheTimeThatTheMachineSleepsCounts) {
  std::chrono::milliseconds uptime = 5h;
  settings_.setLastCheck(std::chrono::system_clock::now());
  StandardUpdaterController const controller(StartingUpdater::yes, delegate_, delegate_,
                                             {.latest = [this] { return latest(); },
                                              .settings = settings_,
                                              .installedVersion = "1.0",
                                              .schedule = {.longestWait = 1ms},
                                              .uptime = [&] { return uptime; }});
  uptime += 23h;
  EXPECT_FALSE(runMainQueueUntil([&] { return checks_ > 0; }, 50ms));
  uptime += 2h;
  EXPECT_TRUE(isChecked(1));
}

}  // namespace
}  // namespace vek
