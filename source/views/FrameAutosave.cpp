// SPDX-License-Identifier: MIT
#include "views/FrameAutosave.hpp"

#include <QGuiApplication>
#include <QScreen>
#include <QVariant>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <sstream>
#include <system_error>

#include "platform/Log.hpp"

namespace vek {

namespace {

/// A window is not saved at each step of a move.
constexpr std::chrono::milliseconds rest(400);

/// On Wayland a window knows no place, and what it takes for one must not replace a saved one.
bool canPlaceWindows() {
  return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

/// Four numbers of the window, and then the screen that it was on.
std::optional<QRect> parse(std::string const& text) {
  std::istringstream numbers(text);
  std::array<int, 4> frame{};
  for (auto& number : frame) numbers >> number;
  if (!numbers || frame[2] <= 0 || frame[3] <= 0) return std::nullopt;
  return QRect(frame[0], frame[1], frame[2], frame[3]);
}

QPoint onScreen(QRect const& frame) {
  auto const* screen = QGuiApplication::screenAt(frame.center());
  if (!screen) screen = QGuiApplication::primaryScreen();
  if (!screen) return frame.topLeft();
  auto const room = screen->availableGeometry();
  auto const inside = [](int place, int length, int start, int end) {
    return std::max(start, std::min(place, end - length));
  };
  return {inside(frame.x(), frame.width(), room.left(), room.left() + room.width()),
          inside(frame.y(), frame.height(), room.top(), room.top() + room.height())};
}

}  // namespace

FrameAutosave::FrameAutosave(QWindow& window, std::string_view name, UserDefaults& defaults)
    : window_(window), key_(fmt::format("NSWindow Frame {}", name)), defaults_(defaults) {
  if (!canPlaceWindows()) return;
  saving_.setSingleShot(true);
  saving_.setInterval(rest);
  connect(&saving_, &QTimer::timeout, this, &FrameAutosave::save);
  auto const moved = [this] {
    if (window_.isVisible()) saving_.start();
  };
  connect(&window, &QWindow::xChanged, this, moved);
  connect(&window, &QWindow::yChanged, this, moved);
  connect(&window, &QWindow::widthChanged, this, moved);
  connect(&window, &QWindow::heightChanged, this, moved);
  connect(&window, &QWindow::visibleChanged, this, [this](bool isVisible) {
    if (!isVisible && saving_.isActive()) save();
  });
}

bool FrameAutosave::restore() {
  if (!canPlaceWindows()) return false;
  auto const text = defaults_.string(key_);
  auto const frame = text ? parse(*text) : std::nullopt;
  if (frame) window_.setPosition(onScreen({frame->topLeft(), window_.size()}));
  return frame.has_value();
}

void FrameAutosave::save() {
  saving_.stop();
  auto frame = window_.geometry();
  auto const unraised = window_.property("unraisedY");
  if (unraised.isValid()) frame.moveTop(unraised.toInt());
  auto const screen = window_.screen() ? window_.screen()->geometry() : QRect();
  try {
    defaults_.set(
        key_, fmt::format("{} {} {} {} {} {} {} {} ", frame.x(), frame.y(), frame.width(),
                          frame.height(), screen.x(), screen.y(), screen.width(), screen.height()));
  } catch (std::system_error const& error) {
    Logger("windows").error(fmt::format("{} could not be saved: {}", key_, error.what()));
  }
}

}  // namespace vek
