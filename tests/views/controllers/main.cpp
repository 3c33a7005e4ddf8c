// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <QGuiApplication>

#include "support/SessionBus.hpp"
#include "support/TemporaryFolder.hpp"
#include "views/MainQueueDriver.hpp"
#include "views/Views.hpp"

// The toolkit leaves fonts and pictures behind, which is no leak of ours.
extern "C" char const* __asan_default_options() {
  return "detect_leaks=0";
}

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  vek::test::TemporaryFolder const settings;
  qputenv("XDG_CONFIG_HOME", settings.path().c_str());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  vek::test::SessionBus const bus;
  qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str());
  QGuiApplication const application(argumentCount, arguments);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  vek::prepareViews();
  vek::MainQueueDriver::start();
  return RUN_ALL_TESTS();
}
