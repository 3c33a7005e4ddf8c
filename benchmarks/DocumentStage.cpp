// SPDX-License-Identifier: MIT
// Windows of transcripts: how long one takes to its first frame, how long the frames take while a
// document is scrolled from its beginning to its end, and what memory further windows take. Prints
// lines of a name and a figure.
#include <fmt/format.h>

#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "AnalysisText.hpp"
#include "support/ScriptedTranscript.hpp"
#include "views/MainQueueDriver.hpp"
#include "views/Views.hpp"

namespace vek {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::size_t analysisSize = 50'000;
/// Of what is longer than anyone reads.
constexpr std::size_t longSize = 1'000'000;
constexpr int openings = 11;
constexpr int furtherWindows = 20;
/// Of one frame, and how many there are at most.
constexpr double scrollStep = 60;
constexpr int mostFrames = 2000;

void tell(std::string const& name, double figure) {
  fmt::print("{} {:.3f}\n", name, figure);
  std::fflush(stdout);
}

/// Runs the event loop until something is true.
void waitFor(std::function<bool()> const& isTrue) {
  QEventLoop loop;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
    if (isTrue()) loop.quit();
  });
  timer.start(std::chrono::milliseconds(20));
  loop.exec();
}

struct Texts {
  std::string analysis;
  std::string words = "Some words.";
};

/// The window of a transcript whose texts were fetched.
class OpenWindow {
 public:
  OpenWindow(QQmlEngine& engine, Texts const& texts) {
    transcript_.show({{QStringLiteral("text"), QString::fromStdString(texts.words)},
                      {QStringLiteral("analysis"), QString::fromStdString(texts.analysis)},
                      {QStringLiteral("assigned"), true}});
    auto const begun = Clock::now();
    window_ = makeWindow(engine, QStringLiteral("TranscriptWindow"),
                         {{QStringLiteral("store"), QVariant::fromValue(transcript_.store())}});
    window_->show();
    nextFrame();
    opening_ = Clock::now() - begun;
  }

  [[nodiscard]] Milliseconds opening() const { return opening_; }

  /// From each frame to the next while the document moves by a step in each, in order of length.
  [[nodiscard]] std::vector<Milliseconds> scroll() {
    auto* view = window_->findChild<QObject*>(QStringLiteral("transcriptScroll"));
    auto const room = [&] {
      return view->property("contentHeight").toDouble() - view->property("height").toDouble();
    };
    std::vector<Milliseconds> frames;
    double y = 0;
    for (auto last = Clock::now(); y < room() && frames.size() < mostFrames;) {
      view->setProperty("contentY", y = std::min(y + scrollStep, room()));
      nextFrame();
      auto const now = Clock::now();
      frames.emplace_back(now - last);
      last = now;
    }
    std::ranges::sort(frames);
    return frames;
  }

  /// Until all of the document is measured.
  void settle() {
    auto* view = window_->findChild<QObject*>(QStringLiteral("transcriptScroll"));
    double height = -1;
    waitFor([&] {
      auto const now = view->property("contentHeight").toDouble();
      return std::exchange(height, now) == now;
    });
  }

 private:
  void nextFrame() {
    QEventLoop loop;
    QObject::connect(window_.get(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    loop.exec();
  }

  test::ScriptedTranscript transcript_;
  std::unique_ptr<QQuickWindow> window_;
  Milliseconds opening_ = {};
};

void measureOpening(QQmlEngine& engine, std::string const& name, Texts const& texts) {
  std::vector<Milliseconds> times;
  times.reserve(openings);
  for (int i = 0; i < openings; ++i) times.push_back(OpenWindow(engine, texts).opening());
  tell(name + "-first", times.front().count());
  std::ranges::sort(times);
  tell(name + "-median", times[times.size() / 2].count());
}

void measureScrolling(QQmlEngine& engine, std::string const& name, Texts const& texts) {
  OpenWindow window(engine, texts);
  auto const frames = window.scroll();
  tell(name + "-frames", static_cast<double>(frames.size()));
  tell(name + "-median", frames[frames.size() / 2].count());
  tell(name + "-p99", frames[frames.size() * 99 / 100].count());
  tell(name + "-longest", frames.back().count());
}

/// What this process alone has, and its share of what it has with others.
double megabytes() {
  std::ifstream file("/proc/self/smaps_rollup");
  for (std::string word; file >> word;) {
    double kilobytes = 0;
    if (word == "Pss:" && file >> kilobytes) return kilobytes / 1024;
  }
  return 0;
}

void measureMemory(QQmlEngine& engine, Texts const& texts) {
  OpenWindow first(engine, texts);
  first.settle();
  std::vector<std::unique_ptr<OpenWindow>> windows;
  auto const before = megabytes();
  for (int i = 0; i < furtherWindows; ++i) {
    windows.push_back(std::make_unique<OpenWindow>(engine, texts));
    windows.back()->settle();
  }
  tell("window-megabytes", (megabytes() - before) / furtherWindows -
                               static_cast<double>(texts.analysis.size()) / (1 << 20));
}

std::string repeated(std::string const& line, std::size_t size) {
  std::string text;
  while (text.size() < size) text += line;
  return text;
}

void measure() {
  auto const engine = makeEngine();
  Texts const analysis{analysisText(analysisSize)};
  measureOpening(*engine, "open", analysis);
  measureMemory(*engine, analysis);
  measureScrolling(*engine, "scroll", analysis);
  for (auto const& [name, texts] : std::map<std::string, Texts>{
           {"code", {"```\n" + repeated("  let value = function(argument, 12);\n", longSize)}},
           {"table", {"|a|b|\n|-|-|\n" + repeated("| Some words | and some more |\n", longSize)}},
           {"paragraph", {repeated("Word after *word* goes on, and on, and `on`. ", longSize)}},
           {"line", {.analysis = "", .words = repeated("Word after word was said. ", longSize)}}}) {
    measureOpening(*engine, "open-" + name, texts);
    measureScrolling(*engine, "scroll-" + name, texts);
  }
}

}  // namespace
}  // namespace vek

int main(int argumentCount, char** arguments) {
  QGuiApplication const application(argumentCount, arguments);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  vek::prepareViews();
  vek::MainQueueDriver::start();
  vek::measure();
}
