// SPDX-License-Identifier: MIT
#include "views/Views.hpp"

#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QQmlComponent>
#include <QTranslator>

#include <stdexcept>

#include "views/AccessibleDocument.hpp"

// Generated with the module. The call keeps it in programs that link the module statically.
void qml_register_types_VEK();  // NOLINT(readability-identifier-naming)

namespace vek {

namespace {

constexpr int bodySize = 13;

/// The plurals of English, and above them the language of the user, where there is a translation.
void installTranslations() {
  auto const folder = QStringLiteral(":/translations");
  for (auto const& locale : {QLocale(QLocale::English), QLocale()}) {
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, QStringLiteral("vek"), QStringLiteral("_"), folder)) continue;
    translator->setParent(qGuiApp);
    QCoreApplication::installTranslator(translator.release());
  }
}

}  // namespace

void prepareViews() {
  // Small windows that rarely change: a graphics card would cost more memory and a slower start.
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  QFont font;
  font.setFamilies(
      {QStringLiteral("Inter"), QStringLiteral("Noto Sans"), QStringLiteral("Noto Color Emoji")});
  font.setPixelSize(bodySize);
  QGuiApplication::setFont(font);
  qml_register_types_VEK();
  AccessibleDocument::install();
  installTranslations();
}

std::unique_ptr<QQmlEngine> makeEngine() {
  auto engine = std::make_unique<QQmlEngine>();
  engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
  return engine;
}

std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine& engine, QString const& name,
                                         QVariantMap const& properties) {
  QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/VEK/%1.qml").arg(name)));
  std::unique_ptr<QObject> made(component.createWithInitialProperties(properties));
  if (!qobject_cast<QQuickWindow*>(made.get()))
    throw std::runtime_error(component.errorString().toStdString());
  return std::unique_ptr<QQuickWindow>(static_cast<QQuickWindow*>(made.release()));
}

}  // namespace vek
