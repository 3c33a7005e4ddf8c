// SPDX-License-Identifier: MIT
#include "views/MainWindowController.hpp"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

#include "platform/UserDefaults.hpp"
#include "views/Views.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

namespace {

/// Between the right edge of the screen and the left one of the window, and below what the desktop
/// keeps at the top.
constexpr QPoint firstPlace(260, 20);

QPoint firstTopLeft(QScreen const& screen) {
  auto const whole = screen.geometry();
  auto const usable = screen.availableGeometry();
  return whole.topLeft() +
         QPoint(usable.width() - firstPlace.x(), whole.height() - usable.height() + firstPlace.y());
}

}  // namespace

MainWindowController::MainWindowController(QQmlEngine& engine, AppStore::Observed::Shared rootStore)
    : store(std::move(rootStore)),
      viewStore_(store),
      compositor_([this] { window->setProperty("isComposited", compositor_.isPresent()); }),
      window(makeWindow(engine, QStringLiteral("MainWindow"),
                        {{QStringLiteral("store"), QVariant::fromValue(&viewStore_)},
                         {QStringLiteral("isComposited"), compositor_.isPresent()}})),
      frame_(*window, "com.vek.app.contentWindow", UserDefaults::standard()) {
  auto const* screen = QGuiApplication::primaryScreen();
  if (!frame_.restore() && screen) window->setPosition(firstTopLeft(*screen));
}

void MainWindowController::didClickStatusItem() {
  bool const isOnScreen =
      window->isVisible() && !window->windowStates().testFlag(Qt::WindowMinimized);
  if (isOnScreen) {
    window->close();
  } else {
    show();
  }
}

void MainWindowController::setTaskbar(Taskbar taskbar) {
  taskbar_ = taskbar;
  if (window->isVisible()) vek::setTaskbar(*window, taskbar);
}

void MainWindowController::show() {
  vek::setTaskbar(*window, taskbar_);
  orderFront(*window);
  activateFrontWindow();
}

}  // namespace vek
