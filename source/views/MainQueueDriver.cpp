// SPDX-License-Identifier: MIT
#include "views/MainQueueDriver.hpp"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>

#include "runtime/MainQueue.hpp"

namespace vek {

namespace {

using Clock = std::chrono::steady_clock;

/// A quarter of a frame.
constexpr std::chrono::milliseconds turn(4);

QEvent::Type wakeEvent() {
  static auto const type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

}  // namespace

void MainQueueDriver::start() {
  [[maybe_unused]] static auto const* const driver = new MainQueueDriver();
}

MainQueueDriver::MainQueueDriver() {
  nextTurn_.setSingleShot(true);
  connect(&nextTurn_, &QTimer::timeout, this, &MainQueueDriver::run);
  auto const type = wakeEvent();
  MainQueue::shared().setWakeHandler(
      [this, type] { QCoreApplication::postEvent(this, new QEvent(type)); });
  nextTurn_.start();
}

bool MainQueueDriver::event(QEvent* event) {
  if (event->type() != wakeEvent()) return QObject::event(event);
  run();
  return true;
}

void MainQueueDriver::run() {
  auto const end = Clock::now() + turn;
  while (MainQueue::shared().runPending(1) == 1) {
    if (Clock::now() < end) continue;
    nextTurn_.start();
    return;
  }
}

}  // namespace vek
