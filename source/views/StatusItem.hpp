// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

#include "views/StatusItemPixmap.hpp"

namespace vek {

/// The program's icon in the status area of the desktop, which calls back when it is clicked. It
/// has no menu. The desktop's host of such icons may come and go at any time.
class StatusItem : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
  Q_PROPERTY(QString Category READ category CONSTANT SCRIPTABLE true)
  Q_PROPERTY(QString Id READ identifier CONSTANT SCRIPTABLE true)
  Q_PROPERTY(QString Title READ title CONSTANT SCRIPTABLE true)
  Q_PROPERTY(QString Status READ status CONSTANT SCRIPTABLE true)
  Q_PROPERTY(bool ItemIsMenu READ isMenu CONSTANT SCRIPTABLE true)
  Q_PROPERTY(QString IconName READ iconName NOTIFY NewIcon SCRIPTABLE true)
  Q_PROPERTY(vek::StatusItemPixmaps IconPixmap READ iconPixmap NOTIFY NewIcon SCRIPTABLE true)

 public:
  /// Shows itself as soon as there is a host.
  StatusItem();
  StatusItem(StatusItem const&) = delete;
  StatusItem& operator=(StatusItem const&) = delete;
  ~StatusItem() override;

  /// The picture of that name among the program's own.
  void setImage(QString const& name);
  void setAction(std::function<void()> action) { action_ = std::move(action); }

  /// Calls back soon with whether a host shows such icons, and again when that may have changed.
  void followHost(std::function<void(bool exists)> told);

  [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
  [[nodiscard]] QString identifier() const { return QStringLiteral("com.vek.app"); }
  [[nodiscard]] QString title() const { return QStringLiteral("VEK"); }
  [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
  [[nodiscard]] bool isMenu() const { return false; }
  /// The picture as the desktop has it, which it draws in the colour of its panel; empty when the
  /// program is not installed.
  [[nodiscard]] QString iconName() const;
  [[nodiscard]] StatusItemPixmaps iconPixmap() const;

  Q_SCRIPTABLE void Activate(int x, int y);
  Q_SCRIPTABLE void SecondaryActivate(int, int) {}
  Q_SCRIPTABLE void ContextMenu(int, int) {}
  Q_SCRIPTABLE void Scroll(int, QString const&) {}
  /// What a Wayland desktop has to be shown for a window to come forward. It comes before a click.
  Q_SCRIPTABLE void ProvideXdgActivationToken(QString const& token);

  Q_SIGNAL Q_SCRIPTABLE void NewIcon();

 private:
  void registerWithWatcher();
  Q_SLOT void askForHost();

  QString service_;
  QDBusServiceWatcher watcher_;
  QString image_;
  std::function<void()> action_;
  std::function<void(bool exists)> told_;
};

}  // namespace vek
