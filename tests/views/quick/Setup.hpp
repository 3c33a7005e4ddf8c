// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QQmlEngine>

#include "support/ScriptedApp.hpp"
#include "support/ScriptedTranscript.hpp"
#include "support/ScriptedUpdates.hpp"
#include "views/MainQueueDriver.hpp"
#include "views/Views.hpp"

namespace vek::test {

/// Gives views what the program would give them.
class Setup : public QObject {
  Q_OBJECT

 public:
  Q_SLOT void applicationAvailable() {
    prepareViews();
    MainQueueDriver::start();
  }
  Q_SLOT void qmlEngineAvailable(QQmlEngine* engine) {
    engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    qmlRegisterType<ScriptedApp>("VEK.Test", 1, 0, "ScriptedApp");
    qmlRegisterType<ScriptedTranscript>("VEK.Test", 1, 0, "ScriptedTranscript");
    qmlRegisterType<ScriptedUpdates>("VEK.Test", 1, 0, "ScriptedUpdates");
  }
};

}  // namespace vek::test
