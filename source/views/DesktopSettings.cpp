// SPDX-License-Identifier: MIT
#include "views/DesktopSettings.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
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

enum class ColorScheme : unsigned { noPreference, preferDark, preferLight };

constexpr int darkLightness = 128;

}  // namespace

DesktopSettings::DesktopSettings() {
  auto const given = qEnvironmentVariable("VEK_COLOR_SCHEME");
  isDarkGiven_ = given == u"dark" || given == u"light";
  isDark_ = isDarkGiven_ ? given == u"dark"
                         : QGuiApplication::palette().window().color().lightness() < darkLightness;
  qDBusRegisterMetaType<Groups>();
  auto bus = QDBusConnection::sessionBus();
  bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  auto call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
  call << QStringList{appearance, gnome};
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
    if (isDarkGiven_ || scheme == ColorScheme::noPreference) return;
    bool const isDark = scheme == ColorScheme::preferDark;
    if (std::exchange(isDark_, isDark) != isDark) Q_EMIT isDarkChanged();
  } else if (group == gnome && key == u"enable-animations") {
    bool const reduces = !value.toBool();
    if (std::exchange(reducesMotion_, reduces) != reduces) Q_EMIT reducesMotionChanged();
  }
}

}  // namespace vek
