// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/ChildProcess.hpp"
#include "support/SessionBus.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek::test {

struct Point {
  int x = 0;
  int y = 0;
  bool operator==(Point const&) const = default;
};

/// A screen with a window manager and, from when the test wants it, a panel with a status area, for
/// programs with a user of their own. It ends with this object.
class Desktop {
 public:
  static constexpr int width = 1280;
  static constexpr int height = 800;
  static constexpr int panelHeight = 28;

  /// Throws std::runtime_error when it does not come up.
  Desktop();
  Desktop(Desktop const&) = delete;
  Desktop& operator=(Desktop const&) = delete;
  ~Desktop();

  /// At the top, with nothing in it but the status area. Throws like the constructor.
  void startPanel();

  /// Variables of the programs that start from now on.
  std::map<std::string, std::string> environment;

  [[nodiscard]] std::unique_ptr<ChildProcess> start(
      std::vector<std::string> words, std::filesystem::path const& errors = "/dev/null") const;
  [[nodiscard]] std::unique_ptr<ChildProcess> startVek(
      std::vector<std::string> arguments = {}) const;
  /// What a program prints until it ends.
  [[nodiscard]] std::string run(std::vector<std::string> words) const;
  /// What vek wrote to standard error so far.
  [[nodiscard]] std::string log() const;
  /// Waits until vek, the panel and the window manager have done what was under way: a window that
  /// is not there then was not asked for.
  void settle() const;

  void endSessionBus() { bus_.reset(); }
  void endDisplay();

  /// The visible window of that title; nothing when there is none.
  [[nodiscard]] std::optional<std::string> window(std::string const& title) const;
  [[nodiscard]] std::string activeWindow() const;
  /// Brings a window forward and waits until it has the keys.
  void activate(std::string const& window) const;
  /// The one above all others.
  [[nodiscard]] std::string topWindow() const;
  /// Whether the taskbar lists it.
  [[nodiscard]] bool isInTaskbar(std::string const& window) const;
  /// Of the screen, as text.
  [[nodiscard]] std::string colour(Point place) const;
  [[nodiscard]] Point position(std::string const& window) const;
  void move(std::string const& window, Point position) const;
  void click(Point place) const;
  /// The middle of the one icon in the status area; nothing while there is none.
  [[nodiscard]] std::optional<Point> statusItem() const;

  [[nodiscard]] std::filesystem::path folder() const { return folder_.path(); }

 private:
  void startWindowManager();
  /// What the status area says of itself.
  [[nodiscard]] std::string hostState() const;

  TemporaryFolder folder_;
  std::unique_ptr<SessionBus> bus_ = std::make_unique<SessionBus>();
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> windowManager_;
  std::unique_ptr<ChildProcess> settings_;
  std::unique_ptr<ChildProcess> panel_;
};

/// Whether it comes true in time.
[[nodiscard]] bool eventually(std::function<bool()> const& isTrue,
                              std::chrono::milliseconds limit = std::chrono::seconds(60));

}  // namespace vek::test
