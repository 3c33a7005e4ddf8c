// SPDX-License-Identifier: MIT
// The main window during a recording: which share of a core the pulsing symbol takes, and how long
// after `send` the frame comes that shows what was said. Prints lines of a name and a figure.
#include <fmt/format.h>

#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "features/AppFeature.hpp"
#include "views/AppStore.hpp"
#include "views/MainQueueDriver.hpp"
#include "views/Views.hpp"

namespace vek {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using State = AppFeature::State;
using Action = AppFeature::Action;
using Shared = AppStore::Observed::Shared;

constexpr std::chrono::seconds pulsingTime{5};
constexpr int piecesBeforeMeasure = 20;
constexpr int pieceCount = 400;
/// What is said in so long a time, a sentence each five seconds.
constexpr std::chrono::hours longTime{8};
constexpr std::chrono::seconds sentenceTime{5};

std::string sentence(int number) {
  return fmt::format("This is sentence {} of a conversation that goes on and on.", number);
}

State recordingOf(std::string const& text) {
  State state;
  state.session.credentials =
      Credentials({.accessToken = "token", .tokenType = "Bearer", .expiresIn = {}});
  state.permissions.hasRecordingPermissions = true;
  state.recording.recording =
      Recording{.transcript = SharedText(text), .startDate = std::chrono::system_clock::now()};
  // Nothing is left to store, so that only the screen is at work.
  state.recording.lastAppendedTranscript = SharedText(text);
  return state;
}

void wait(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

double processorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// The main window with a recording of that text.
class Stage {
 public:
  Stage(QQmlEngine& engine, std::string const& text)
      : root_(Store<State, Action>::make(recordingOf(text), [] { return AppFeature(); })),
        store_(root_),
        window_(makeWindow(engine, QStringLiteral("MainWindow"),
                           {{QStringLiteral("store"), QVariant::fromValue(&store_)},
                            {QStringLiteral("isComposited"), false}})) {
    window_->show();
    waitForFrame();
  }

  [[nodiscard]] double pulsingShare() {
    auto const before = processorSeconds();
    wait(pulsingTime);
    return (processorSeconds() - before) / std::chrono::duration<double>(pulsingTime).count();
  }

  /// Of the pieces of speech, which come at any time between two frames.
  [[nodiscard]] std::vector<Milliseconds> delays() {
    std::vector<Milliseconds> found;
    std::mt19937 random(1);
    std::uniform_int_distribution<int> pause(20, 60);
    for (int i = 0; i < piecesBeforeMeasure + pieceCount; ++i) {
      wait(std::chrono::milliseconds(pause(random)));
      auto const begun = Clock::now();
      say(sentence(i / 10).substr(0, 5 * static_cast<std::size_t>(i % 10 + 1)));
      waitForFrame();
      if (i >= piecesBeforeMeasure) found.emplace_back(Clock::now() - begun);
    }
    std::ranges::sort(found);
    return found;
  }

 private:
  void say(std::string text) {
    using Recording = RecordingFeature;
    root_->send(Action::recording{Recording::Action::internal{
        Recording::InternalAction::updateTranscript{{std::move(text), true}}}});
  }
  void waitForFrame() {
    QEventLoop loop;
    QObject::connect(window_.get(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    loop.exec();
  }

  Shared root_;
  AppStore store_;
  std::unique_ptr<QQuickWindow> window_;
};

void tell(char const* name, double figure) {
  fmt::print("{} {:.3f}\n", name, figure);
  std::fflush(stdout);
}

void tellDelays(char const* name, std::vector<Milliseconds> const& delays) {
  tell(fmt::format("{}-median", name).c_str(), delays[delays.size() / 2].count());
  tell(fmt::format("{}-p99", name).c_str(), delays[delays.size() * 99 / 100].count());
}

std::string longText() {
  std::string text;
  for (int i = 0; i < longTime / sentenceTime; ++i) text += sentence(i) + '\n';
  return text;
}

}  // namespace
}  // namespace vek

int main(int argumentCount, char** arguments) {
  using namespace vek;
  QGuiApplication const application(argumentCount, arguments);
  prepareViews();
  MainQueueDriver::start();
  auto const engine = makeEngine();
  {
    Stage stage(*engine, "");
    tell("pulsing", stage.pulsingShare());
    tellDelays("short", stage.delays());
  }
  Stage stage(*engine, longText());
  tellDelays("long", stage.delays());
}
