// SPDX-License-Identifier: MIT
#include <QtQuickTest/quicktest.h>
#include <QQmlEngine>

#include "support/ScriptedApp.hpp"
#include "views/Views.hpp"

namespace vek::test {

class Setup : public QObject {
  Q_OBJECT

 public:
  Q_SLOT void applicationAvailable() { prepareViews(); }
  Q_SLOT void qmlEngineAvailable(QQmlEngine* engine) {
    engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    qmlRegisterType<ScriptedApp>("VEK.Test", 1, 0, "ScriptedApp");
  }
};

}  // namespace vek::test

QUICK_TEST_MAIN_WITH_SETUP(quick, vek::test::Setup)

#include "main.moc"
