// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

namespace vek {

/// Runs the main queue inside Qt's event loop, a few milliseconds of it at a time, so that windows
/// are painted and input is answered whatever is posted.
class MainQueueDriver : public QObject {
 public:
  /// Called once, on the main thread, when there is an application. The driver is never released:
  /// other threads may post until the process has ended.
  static void start();

 protected:
  bool event(QEvent* event) override;

 private:
  MainQueueDriver();
  void run();

  /// Takes the next turn when the event loop has nothing else to do.
  QTimer nextTurn_;
};

}  // namespace vek
