// SPDX-License-Identifier: MIT
// The least that a program in Qt Quick can be, in the configuration of the desktop program.
#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

int main(int argumentCount, char** arguments) {
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  QGuiApplication const application(argumentCount, arguments);
  QFont font;
  font.setFamilies(
      {QStringLiteral("Inter"), QStringLiteral("Noto Sans"), QStringLiteral("Noto Color Emoji")});
  QGuiApplication::setFont(font);
  QQmlApplicationEngine engine;
  engine.loadData(R"(
    import QtQuick
    Window {
      visible: true
      width: 240
      height: 240
      title: "Hello"
      Text { anchors.centerIn: parent; text: "Hello, world" }
    })");
  return QGuiApplication::exec();
}
