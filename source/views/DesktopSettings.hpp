// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QDBusVariant>
#include <QObject>
#include <QSet>

#include <optional>

class QDBusPendingCallWatcher;

namespace vek {

/// How the user wants all programs of the desktop to look, followed live through the desktop's
/// settings portal. Without a portal, or a preference there, the palette decides.
///
/// VEK_COLOR_SCHEME=light or dark stands above the desktop's choice.
class DesktopSettings : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  Q_PROPERTY(bool isDark READ isDark NOTIFY isDarkChanged)
  Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY reducesMotionChanged)

 public:
  DesktopSettings();

  [[nodiscard]] bool isDark() const { return isDark_; }
  [[nodiscard]] bool reducesMotion() const { return !motionless_.isEmpty(); }

  bool eventFilter(QObject* watched, QEvent* event) override;

  Q_SIGNAL void isDarkChanged();
  Q_SIGNAL void reducesMotionChanged();

 private:
  Q_SLOT void settingChanged(QString const& group, QString const& key, QDBusVariant const& value);
  void didRead(QDBusPendingCallWatcher& answer);
  void take(QString const& group, QString const& key, QVariant const& value);
  void takeMotion(QString const& key, bool isWanted);
  void choose();

  std::optional<bool> given_;
  std::optional<bool> preferred_;
  bool isDark_ = false;
  /// The settings by which the user wants less motion.
  QSet<QString> motionless_;
};

}  // namespace vek
