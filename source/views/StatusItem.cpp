// SPDX-License-Identifier: MIT
#include "views/StatusItem.hpp"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QIcon>

#include <chrono>
#include <utility>

#include "views/WindowOrder.hpp"

namespace vek {

namespace {

auto const watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
auto const watcherPath = QStringLiteral("/StatusNotifierWatcher");
auto const itemPath = QStringLiteral("/StatusNotifierItem");
auto const symbol = QStringLiteral("com.vek.app-symbolic");
constexpr std::chrono::milliseconds patience(1000);

}  // namespace

StatusItem::StatusItem()
    : service_(QStringLiteral("org.kde.StatusNotifierItem-%1-1")
                   .arg(QCoreApplication::applicationPid())),
      watcher_(watcherService, QDBusConnection::sessionBus(),
               QDBusServiceWatcher::WatchForOwnerChange) {
  qDBusRegisterMetaType<StatusItemPixmap>();
  qDBusRegisterMetaType<StatusItemPixmaps>();
  connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this,
          &StatusItem::registerWithWatcher);
  connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusItem::askForHost);
  auto bus = QDBusConnection::sessionBus();
  bus.registerObject(itemPath, this, QDBusConnection::ExportScriptableContents);
  bus.registerService(service_);
  registerWithWatcher();
}

StatusItem::~StatusItem() {
  auto bus = QDBusConnection::sessionBus();
  bus.unregisterService(service_);
  bus.unregisterObject(itemPath);
}

void StatusItem::registerWithWatcher() {
  auto call = QDBusMessage::createMethodCall(watcherService, watcherPath, watcherService,
                                             QStringLiteral("RegisterStatusNotifierItem"));
  call << service_;
  QDBusConnection::sessionBus().asyncCall(call);
}

void StatusItem::followHost(std::function<void(bool)> told) {
  told_ = std::move(told);
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    QMetaObject::invokeMethod(this, [this] { told_(false); }, Qt::QueuedConnection);
    return;
  }
  for (auto const* change : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    bus.connect(QString(), watcherPath, watcherService, QString::fromLatin1(change), this,
                SLOT(askForHost()));
  }
  askForHost();
}

void StatusItem::askForHost() {
  if (!told_) return;
  auto call = QDBusMessage::createMethodCall(watcherService, watcherPath,
                                             QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("Get"));
  call << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
  auto* asked = new QDBusPendingCallWatcher(
      QDBusConnection::sessionBus().asyncCall(call, patience.count()), this);
  connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked] {
    QDBusPendingReply<QDBusVariant> const reply = *asked;
    asked->deleteLater();
    told_(reply.isValid() && reply.value().variant().toBool());
  });
}

void StatusItem::setImage(QString const& name) {
  image_ = QStringLiteral(":/qt/qml/VEK/images/%1.svg").arg(QString(name).replace(u' ', u'-'));
  Q_EMIT NewIcon();
}

QString StatusItem::iconName() const {
  return QIcon::hasThemeIcon(symbol) ? symbol : QString();
}

StatusItemPixmaps StatusItem::iconPixmap() const {
  return statusItemPixmaps(image_);
}

void StatusItem::Activate(int, int) {
  if (action_) action_();
}

void StatusItem::ProvideXdgActivationToken(QString const& token) {
  keepActivation({.token = token, .startupID = {}});
}

}  // namespace vek
