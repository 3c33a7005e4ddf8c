// SPDX-License-Identifier: MIT
#include "views/ApplicationService.hpp"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <stdexcept>
#include <utility>

#include "platform/Log.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

namespace {

QString applicationName() {
  return QStringLiteral("com.vek.app");
}

void keepActivation(QVariantMap const& platformData) {
  vek::keepActivation(
      {.token = platformData.value(QStringLiteral("activation-token")).toString(),
       .startupID = platformData.value(QStringLiteral("desktop-startup-id")).toString()});
}

}  // namespace

ApplicationService::Claim ApplicationService::claim(Requests requests) {
  requests_ = std::move(requests);
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    Logger("shell").error(
        "There is no session bus: no status item, no second start that finds this one.");
    return Claim::noBus;
  }
  bus.registerObject(QStringLiteral("/com/vek/app"), this,
                     QDBusConnection::ExportScriptableInvokables);
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
              QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
              SLOT(busDisconnected()));
  auto const answer = bus.interface()->registerService(applicationName());
  return answer.value() == QDBusConnectionInterface::ServiceRegistered ? Claim::granted
                                                                       : Claim::anotherProcessHasIt;
}

void ApplicationService::release() {
  QDBusConnection::sessionBus().unregisterService(applicationName());
}

void ApplicationService::busDisconnected() {
  requests_.endOfSession();
}

void ApplicationService::Activate(QVariantMap const& platformData) {
  keepActivation(platformData);
  requests_.activate();
}

void ApplicationService::Open(QStringList const& urls, QVariantMap const& platformData) {
  keepActivation(platformData);
  for (auto const& url : urls) requests_.open(url);
}

void ApplicationService::ActivateAction(QString const& name, QVariantList const&,
                                        QVariantMap const& platformData) {
  keepActivation(platformData);
  auto const action = requests_.actions.find(name);
  if (action == requests_.actions.end()) {
    sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no action '%1'.").arg(name));
    return;
  }
  try {
    action->second();
  } catch (std::runtime_error const& refusal) {
    sendErrorReply(QDBusError::Failed, QString::fromUtf8(refusal.what()));
  }
}

}  // namespace vek
