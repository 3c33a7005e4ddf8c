// SPDX-License-Identifier: MIT
#include "views/DesktopSettings.hpp"

#include <gtest/gtest.h>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QPalette>
#include <QTest>

namespace vek::test {
namespace {

using Groups = QMap<QString, QVariantMap>;

auto const path = QStringLiteral("/org/freedesktop/portal/desktop");
auto const appearance = QStringLiteral("org.freedesktop.appearance");
auto const gnome = QStringLiteral("org.gnome.desktop.interface");
auto const kde = QStringLiteral("org.kde.kdeglobals.KDE");

/// The desktop's settings, on a connection of their own.
class Portal : public QDBusVirtualObject {
 public:
  Portal() {
    qDBusRegisterMetaType<Groups>();
    bus.registerVirtualObject(path, this);
    bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }
  ~Portal() override { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }

  void set(QString const& group, char const* key, QVariant const& value) {
    auto message = QDBusMessage::createSignal(
        path, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    message << group << QString::fromLatin1(key) << QVariant::fromValue(QDBusVariant(value));
    bus.send(message);
  }

  [[nodiscard]] QString introspect(QString const& /*path*/) const override { return {}; }
  bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override {
    if (message.member() != u"ReadAll") return false;
    return connection.send(message.createReply(QVariant::fromValue(settings)));
  }

  Groups settings;

 private:
  QDBusConnection bus = QDBusConnection::connectToBus(
      qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("portal"));
};

void setWindowColor(Qt::GlobalColor color) {
  auto palette = QGuiApplication::palette();
  palette.setColor(QPalette::Window, color);
  QGuiApplication::setPalette(palette);
}

bool eventually(std::function<bool()> const& condition) {
  return QTest::qWaitFor(condition);
}

TEST(DesktopSettingsTests, ThePreferenceIsFollowedAndWithoutOneThePalette) {
  Portal portal;
  portal.settings[appearance][QStringLiteral("color-scheme")] = 1U;
  setWindowColor(Qt::white);
  DesktopSettings const settings;
  EXPECT_FALSE(settings.isDark());
  EXPECT_TRUE(eventually([&] { return settings.isDark(); }));
  portal.set(appearance, "color-scheme", 2U);
  EXPECT_TRUE(eventually([&] { return !settings.isDark(); }));
  setWindowColor(Qt::black);
  QCoreApplication::processEvents();
  EXPECT_FALSE(settings.isDark());
  portal.set(appearance, "color-scheme", 0U);
  EXPECT_TRUE(eventually([&] { return settings.isDark(); }));
  setWindowColor(Qt::white);
  EXPECT_TRUE(eventually([&] { return !settings.isDark(); }));
}

TEST(DesktopSettingsTests, AnyDesktopsWishForLessMotionIsHeard) {
  Portal portal;
  portal.settings[gnome][QStringLiteral("enable-animations")] = false;
  DesktopSettings const settings;
  EXPECT_TRUE(eventually([&] { return settings.reducesMotion(); }));
  portal.set(appearance, "reduced-motion", 1U);
  portal.set(kde, "AnimationDurationFactor", QStringLiteral("0"));
  portal.set(gnome, "enable-animations", true);
  portal.set(appearance, "reduced-motion", 0U);
  portal.set(appearance, "color-scheme", 1U);
  EXPECT_TRUE(eventually([&] { return settings.isDark(); })) << "all that went before is heard";
  EXPECT_TRUE(settings.reducesMotion());
  portal.set(kde, "AnimationDurationFactor", QStringLiteral("0.5"));
  EXPECT_TRUE(eventually([&] { return !settings.reducesMotion(); }));
}

}  // namespace
}  // namespace vek::test
