// SPDX-License-Identifier: MIT
#include "views/DesktopSettings.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace vek {

namespace {

using Groups = QMap<QString, QVariantMap>;

auto const service = QStringLiteral("org.freedesktop.portal.Desktop");
auto const path = QStringLiteral("/org/freedesktop/portal/desktop");
auto const interface = QStringLiteral("org.freedesktop.portal.Settings");
auto const appearance = QStringLiteral("org.freedesktop.appearance");
auto const gnome = QStringLiteral("org.gnome.desktop.interface");
auto const kde = QStringLiteral("org.kde.kdeglobals.KDE");

enum class ColorScheme : unsigned { noPreference, preferDark, preferLight };

constexpr int darkLightness = 128;

bool isPaletteDark() {
  return QGuiApplication::palette().window().color().lightness() < darkLightness;
}

}  // namespace

DesktopSettings::DesktopSettings() {
  auto const given = qEnvironmentVariable("VEK_COLOR_SCHEME");
  if (given == u"dark" || given == u"light") given_ = given == u"dark";
  choose();
  qGuiApp->installEventFilter(this);
  qDBusRegisterMetaType<Groups>();
  // Without it the signal is not connected when nothing has used the bus before.
  qRegisterMetaType<QDBusVariant>();
  auto bus = QDBusConnection::sessionBus();
  bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  auto call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
  call << QStringList{appearance, gnome, kde};
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this,
          [this](QDBusPendingCallWatcher* finished) { didRead(*finished); });
}

void DesktopSettings::didRead(QDBusPendingCallWatcher& answer) {
  QDBusPendingReply<Groups> const reply = answer;
  answer.deleteLater();
  if (reply.isError()) return;
  auto const groups = reply.value();
  for (auto group = groups.begin(); group != groups.end(); ++group) {
    for (auto one = group->begin(); one != group->end(); ++one) {
      take(group.key(), one.key(), one.value());
    }
  }
}

void DesktopSettings::settingChanged(QString const& group, QString const& key,
                                     QDBusVariant const& value) {
  take(group, key, value.variant());
}

void DesktopSettings::take(QString const& group, QString const& key, QVariant const& value) {
  if (group == appearance && key == u"color-scheme") {
    auto const scheme = static_cast<ColorScheme>(value.toUInt());
    preferred_.reset();
    if (scheme == ColorScheme::preferDark) preferred_ = true;
    if (scheme == ColorScheme::preferLight) preferred_ = false;
    choose();
  } else if (group == appearance && key == u"reduced-motion") {
    takeMotion(key, value.toUInt() == 0);
  } else if (group == gnome && key == u"enable-animations") {
    takeMotion(key, value.toBool());
  } else if (group == kde && key == u"AnimationDurationFactor") {
    takeMotion(key, value.toDouble() > 0);
  }
}

void DesktopSettings::takeMotion(QString const& key, bool isWanted) {
  bool const reduced = reducesMotion();
  if (isWanted) {
    motionless_.remove(key);
  } else {
    motionless_.insert(key);
  }
  if (reducesMotion() != reduced) Q_EMIT reducesMotionChanged();
}

void DesktopSettings::choose() {
  bool const isDark = given_ ? *given_ : preferred_ ? *preferred_ : isPaletteDark();
  if (std::exchange(isDark_, isDark) != isDark) Q_EMIT isDarkChanged();
}

bool DesktopSettings::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) choose();
  return QObject::eventFilter(watched, event);
}

}  // namespace vek
