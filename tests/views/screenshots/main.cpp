// SPDX-License-Identifier: MIT
// vek_screenshots FOLDER: draws every state of the main window into FOLDER/NAME-SCHEME-SCALEx.png.
// The scheme is that of VEK_COLOR_SCHEME, the scale that of QT_SCALE_FACTOR.
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

#include <cstdio>
#include <vector>

#include "support/ScriptedApp.hpp"
#include "views/Views.hpp"

namespace {

struct Shot {
  QString name;
  QVariantMap facts;
  bool isShowingList = false;
};

constexpr auto transition = std::chrono::milliseconds(500);

QString const said = QStringLiteral(
    "Good morning, this is the service desk.\nMy last invoice shows the old address, and I would "
    "like to have it sent again to the new one.");
QString const refusal = QStringLiteral("The server could not be reached. Check your connection.");
QString const longRefusal =
    refusal +
    QStringLiteral(
        " The request was sent three times and each time the connection was closed before an "
        "answer "
        "came. If this lasts, ask the people who run the backend, and tell them when it began.");

QVariantMap with(QVariantMap facts) {
  facts.insert({{"loggedIn", true}, {"permitted", true}});
  return facts;
}

std::vector<Shot> shots() {
  return {
      {"login", {}},
      {"login-waiting", {{"loggingIn", true}}},
      {"login-error", {{"sessionError", refusal}}},
      {"permissions", {{"loggedIn", true}}},
      {"permissions-waiting", {{"loggedIn", true}, {"asking", true}}},
      {"ready", with({})},
      {"ready-badge", with({{"transcripts", 5}, {"unassigned", 3}})},
      {"ready-badge-many", with({{"transcripts", 2000}, {"unassigned", 1234}})},
      {"starting", with({{"starting", true}})},
      {"recording-begins", with({{"recording", "Good"}, {"elapsed", 2}})},
      {"recording",
       with({{"recording", said}, {"elapsed", 4271}, {"transcripts", 9}, {"unassigned", 1}})},
      {"error", with({{"recordingError", refusal}})},
      {"error-long", with({{"transcriptsError", longRefusal}})},
      {"list-empty", with({}), true},
      {"list-loading", with({{"refreshing", true}}), true},
  };
}

}  // namespace

int main(int argumentCount, char** arguments) {
  QGuiApplication const application(argumentCount, arguments);
  if (argumentCount != 2) {
    std::fputs("usage: vek_screenshots FOLDER\n", stderr);
    return 1;
  }
  QDir const folder(QString::fromLocal8Bit(arguments[1]));
  vek::prepareViews();
  auto const engine = vek::makeEngine();
  vek::test::ScriptedApp app;
  auto const window = vek::makeWindow(
      *engine, "MainWindow", {{"store", QVariant::fromValue(app.store())}, {"isComposited", true}});
  window->show();
  auto const suffix = QStringLiteral("-%1-%2x.png")
                          .arg(qEnvironmentVariable("VEK_COLOR_SCHEME", "light"))
                          .arg(window->devicePixelRatio());
  for (auto const& shot : shots()) {
    app.show({});
    app.show(shot.facts);
    window->setProperty("isShowingList", shot.isShowingList);
    QTest::qWait(transition.count());
    if (!window->grabWindow().save(folder.filePath(shot.name + suffix))) {
      std::fputs("a picture could not be written\n", stderr);
      return 1;
    }
  }
  return 0;
}
