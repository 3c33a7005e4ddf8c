// SPDX-License-Identifier: MIT
#include "views/Application.hpp"

#include <QGuiApplication>

#include "features/Application.hpp"
#include "platform/FatalError.hpp"
#include "views/AppDelegate.hpp"
#include "views/MainQueueDriver.hpp"
#include "views/Views.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

namespace {

bool hasDesktop() {
  return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
         qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

}  // namespace

int applicationMain(int argumentCount, char** arguments) {
  if (!hasDesktop()) fatalError("vek needs a desktop to show itself on; in a terminal use vekctl.");
  QCoreApplication::setApplicationName(QStringLiteral("vek"));
  QGuiApplication::setApplicationDisplayName(QStringLiteral("VEK"));
  QGuiApplication::setDesktopFileName(QStringLiteral("com.vek.app"));
  // The program lives in the status area: that its windows are closed does not end it.
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QGuiApplication application(argumentCount, arguments);
  prepareViews();
  MainQueueDriver::start();
  AppDelegate delegate;
  Application::shared() = {
      .terminate = terminate,
      .orderFrontStandardAboutPanel = [&delegate] { delegate.orderFrontStandardAboutPanel(); },
      .activate = [](ActivationOptions) { activateFrontWindow(); }};
  delegate.applicationDidFinishLaunching();
  return QGuiApplication::exec();
}

void terminate() {
  QCoreApplication::quit();
}

}  // namespace vek
