// SPDX-License-Identifier: MIT
// vek_screenshots FOLDER: draws every state of the windows into FOLDER/NAME-SCHEME-SCALEx.png.
// The scheme is that of VEK_COLOR_SCHEME, the scale that of QT_SCALE_FACTOR.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QLocale>
#include <QPainter>
#include <QQuickItem>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "TranscriptShots.hpp"
#include "support/ScriptedApp.hpp"
#include "support/ScriptedTranscript.hpp"
#include "support/ScriptedUpdates.hpp"
#include "views/LicenceNotes.hpp"
#include "views/SettingsController.hpp"
#include "views/Views.hpp"

namespace {

struct Shot {
  QString name;
  QVariantMap facts;
  bool isShowingList = false;
  bool isShowingMenu = false;
  /// What has the keyboard's focus.
  QString focus = {};
};

/// A little more than that of windows, whose edges are blended with black here.
constexpr qreal cornerRadius = 13;
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

QVariantList const cells = {
    QVariantMap{{"text", said}},
    QVariantMap{{"text", "Thank you for calling. The order left the warehouse this morning."},
                {"customer", "known"}},
    QVariantMap{{"loading", true}, {"customer", "known"}},
    QVariantMap{{"failed", true}},
    QVariantMap{{"text", ""}, {"customer", "gone"}},
};

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
      {"errors", with({{"permissionsError", longRefusal},
                       {"recordingError", longRefusal},
                       {"sessionError", longRefusal},
                       {"transcriptsError", refusal}})},
      {"list-empty", with({}), true},
      {"list-loading", with({{"refreshing", true}}), true},
      {"list", with({{"cells", cells}}), true},
      {"list-states", with({{"cells", QVariantList(cells.begin() + 2, cells.end())}}), true},
      {"menu", with({{"cells", cells}}), false, true},
      {"focus-login", {}, false, false, "loginButton"},
      {"focus-record", with({}), false, false, "recordButton"},
      {"focus-list-button", with({{"cells", cells}}), true, false, "listButton"},
      {"focus-cell", with({{"cells", cells}}), true, false, "transcripts"},
      {"focus-menu-button", with({}), false, false, "menuButton"},
  };
}

std::vector<std::pair<QString, QVariantMap>> updateShots() {
  auto const notes = QStringLiteral(
      "Recordings start faster, and no word of the beginning is lost.\n\n"
      "• The list of transcripts can be searched.\n"
      "• A microphone that is unplugged during a call is followed to the next one.\n"
      "• Settings keep their place on screens of different scales.");
  return {
      {"update-checking", {{"checking", true}}},
      {"update", {{"version", "1.4"}, {"notes", notes}}},
      {"update-long", {{"version", "1.4"}, {"notes", QString(notes + "\n\n").repeated(5)}}},
      {"update-managed", {{"version", "1.4"}, {"packageManager", "APT"}}},
      {"update-none", {{"upToDate", true}}},
      {"update-failure", {{"failure", "The server could not be found."}}},
  };
}

/// Writes pictures of windows, once they have come to rest.
class Camera {
 public:
  explicit Camera(QString const& folder) : folder_(folder) {}

  /// Ends the program when the picture cannot be written.
  void take(QQuickWindow& window, QString const& name) const {
    QTest::qWait(transition.count());
    auto const suffix = QStringLiteral("-%1-%2x.png")
                            .arg(qEnvironmentVariable("VEK_COLOR_SCHEME", "light"))
                            .arg(window.devicePixelRatio());
    if (picture(window).save(folder_.filePath(name + suffix))) return;
    std::fputs("a picture could not be written\n", stderr);
    std::exit(1);
  }

  /// Puts the text of what is on a picture beside it, for others to draw.
  void keepText(QString const& text, QString const& name) const {
    QFile file(folder_.filePath(name + QStringLiteral(".md")));
    if (file.open(QIODevice::WriteOnly)) file.write(text.toUtf8());
  }

 private:
  /// With nothing where the round corners of a window without a frame leave the desktop in view.
  static QImage picture(QQuickWindow& window) {
    auto grabbed = window.grabWindow();
    grabbed.setDevicePixelRatio(1);
    if (!window.flags().testFlag(Qt::FramelessWindowHint)) return grabbed;
    auto const radius = cornerRadius * window.devicePixelRatio();
    QImage rounded(grabbed.size(), QImage::Format_ARGB32);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QBrush content(grabbed);
    painter.setBrush(content);
    painter.drawRoundedRect(rounded.rect(), radius, radius);
    return rounded;
  }

  QDir folder_;
};

/// As with the tabulator key.
void focus(QQuickWindow& window, QString const& name) {
  if (name.isEmpty()) return;
  if (auto* item = window.findChild<QQuickItem*>(name)) item->forceActiveFocus(Qt::TabFocusReason);
}

void open(QQuickWindow& window, char const* picker) {
  auto* const popup =
      window.findChild<QObject*>(QString::fromLatin1(picker))->property("popup").value<QObject*>();
  QMetaObject::invokeMethod(popup, "open");
}

void takeMainWindow(QQmlEngine& engine, Camera const& camera) {
  vek::test::ScriptedApp app;
  auto const window = vek::makeWindow(
      engine, "MainWindow", {{"store", QVariant::fromValue(app.store())}, {"isComposited", true}});
  window->show();
  for (auto const& shot : shots()) {
    app.show({});
    app.show(shot.facts);
    window->setProperty("isShowingList", shot.isShowingList);
    if (shot.isShowingMenu) {
      QMetaObject::invokeMethod(window->findChild<QObject*>("menuButton"), "clicked");
    }
    focus(*window, shot.focus);
    camera.take(*window, shot.name);
    if (shot.isShowingMenu) QTest::keyClick(window.get(), Qt::Key_Escape);
  }
}

void takeSettings(QQmlEngine& engine, Camera const& camera) {
  vek::test::ScriptedApp app;
  vek::SettingsController controller(engine, app.root());
  app.show(with({{"settings", true}}));
  auto& shown = *controller.windowController();
  QCoreApplication::processEvents();
  camera.take(shown.window(), "settings-general");
  focus(shown.window(), "providerPicker");
  camera.take(shown.window(), "settings-focus");
  open(shown.window(), "providerPicker");
  camera.take(shown.window(), "settings-choosing");
  shown.changeContentView("account");
  camera.take(shown.window(), "settings-account");
  app.show({});
  camera.take(shown.window(), "settings-account-empty");
}

void takeTranscripts(QQmlEngine& engine, Camera const& camera) {
  for (auto const& shot : vek::test::transcriptShots()) {
    vek::test::ScriptedTranscript transcript;
    transcript.show(shot.facts);
    auto const window = vek::makeWindow(engine, "TranscriptWindow",
                                        {{"store", QVariant::fromValue(transcript.store())}});
    window->resize(shot.size);
    window->show();
    if (shot.isSaving) {
      QMetaObject::invokeMethod(window->findChild<QObject*>("transcriptView"), "save",
                                Q_ARG(QString, {}), Q_ARG(QString, "md"));
    }
    camera.take(*window, shot.name);
    camera.keepText(shot.facts["analysis"].toString(), shot.name);
    if (shot.name != u"transcript-choose") continue;
    open(*window, "customerPicker");
    camera.take(*window, "transcript-choosing");
  }
}

void takeUpdateWindow(QQmlEngine& engine, Camera const& camera) {
  vek::test::ScriptedUpdates updates;
  auto const window =
      vek::makeWindow(engine, "UpdateWindow", {{"panel", QVariant::fromValue(updates.panel())}});
  for (auto const& [name, facts] : updateShots()) {
    updates.show(facts);
    window->show();
    camera.take(*window, name);
  }
}

void takeAboutPanel(QQmlEngine& engine, Camera const& camera) {
  auto const panel = vek::makeWindow(engine, "AboutPanel",
                                     {{"version", "1.0.0"}, {"licences", vek::licenceNotes()}});
  panel->show();
  camera.take(*panel, "about");
}

}  // namespace

int main(int argumentCount, char** arguments) {
  QGuiApplication const application(argumentCount, arguments);
  if (argumentCount != 2) {
    std::fputs("usage: vek_screenshots FOLDER\n", stderr);
    return 1;
  }
  QLocale::setDefault(QLocale(QLocale::English));
  vek::prepareViews();
  auto const engine = vek::makeEngine();
  Camera const camera(QString::fromLocal8Bit(arguments[1]));
  takeMainWindow(*engine, camera);
  takeSettings(*engine, camera);
  takeTranscripts(*engine, camera);
  takeUpdateWindow(*engine, camera);
  takeAboutPanel(*engine, camera);
  return 0;
}
