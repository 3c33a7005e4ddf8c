// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QObject>
#include <QQmlEngine>
#include <QTemporaryDir>

#include "support/ScriptedApp.hpp"
#include "support/ScriptedTranscript.hpp"
#include "support/ScriptedUpdates.hpp"
#include "views/MainQueueDriver.hpp"
#include "views/Views.hpp"

namespace vek::test {

/// A folder of a test's own.
class ScratchFolder : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString path READ path CONSTANT)

 public:
  [[nodiscard]] QString path() const { return folder_.path(); }
  Q_INVOKABLE [[nodiscard]] QString read(QString const& name) const {
    QFile file(folder_.filePath(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
  }

 private:
  QTemporaryDir folder_;
};

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
    qmlRegisterType<ScratchFolder>("VEK.Test", 1, 0, "ScratchFolder");
    qmlRegisterType<ScriptedApp>("VEK.Test", 1, 0, "ScriptedApp");
    qmlRegisterType<ScriptedTranscript>("VEK.Test", 1, 0, "ScriptedTranscript");
    qmlRegisterType<ScriptedUpdates>("VEK.Test", 1, 0, "ScriptedUpdates");
  }
};

}  // namespace vek::test
