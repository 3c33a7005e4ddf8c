// SPDX-License-Identifier: MIT
#include "views/SaveDialog.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QGuiApplication>
#include <QUrl>

#include <utility>

namespace vek {

namespace {

auto const service = QStringLiteral("org.freedesktop.portal.Desktop");
auto const path = QStringLiteral("/org/freedesktop/portal/desktop");
auto const interface = QStringLiteral("org.freedesktop.portal.FileChooser");
auto const request = QStringLiteral("org.freedesktop.portal.Request");

enum Response : unsigned { accepted, cancelledByUser };

/// How the dialog is told which window it belongs to; nothing where that cannot be said.
QString identifierOf(QQuickWindow const* window) {
  bool const isX11 = window && QGuiApplication::platformName() == u"xcb";
  return isX11 ? QStringLiteral("x11:%1").arg(window->winId(), 0, 16) : QString();
}

void closeRequest(QString const& handle) {
  QDBusConnection::sessionBus().send(
      QDBusMessage::createMethodCall(service, handle, request, QStringLiteral("Close")));
}

}  // namespace

void SaveDialog::open(QQuickWindow* window, QString const& title, QString const& folder,
                      QString const& name) {
  static int opened = 0;
  auto const bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    Q_EMIT unavailable();
    return;
  }
  close();
  auto const token = QStringLiteral("vek%1").arg(++opened);
  auto const sender = bus.baseService().mid(1).replace(u'.', u'_');
  // Known before the call, so that no answer comes too early.
  auto const handle = QStringLiteral("%1/request/%2/%3").arg(path, sender, token);
  listen(handle);
  auto call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("SaveFile"));
  call << identifierOf(window) << title
       << QVariantMap{{QStringLiteral("handle_token"), token},
                      {QStringLiteral("current_name"), name},
                      {QStringLiteral("current_folder"), QFile::encodeName(folder) + '\0'}};
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, handle] {
    QDBusPendingReply<QDBusObjectPath> const reply = *answer;
    answer->deleteLater();
    // It has been answered already, or closed for another.
    if (request_ != handle) return;
    listen(reply.isError() ? QString() : reply.value().path());
    if (reply.isError()) Q_EMIT unavailable();
  });
}

void SaveDialog::listen(QString const& next) {
  auto bus = QDBusConnection::sessionBus();
  auto const before = std::exchange(request_, next);
  if (before == next) return;
  auto const response = QStringLiteral("Response");
  auto const* slot = SLOT(responded(uint, QVariantMap));
  if (!before.isEmpty()) bus.disconnect(service, before, request, response, this, slot);
  if (!next.isEmpty()) bus.connect(service, next, request, response, this, slot);
}

void SaveDialog::close() {
  if (request_.isEmpty()) return;
  closeRequest(request_);
  listen({});
}

void SaveDialog::responded(uint response, QVariantMap const& results) {
  listen({});
  auto const files = results.value(QStringLiteral("uris")).toStringList();
  if (response == accepted && !files.isEmpty()) {
    Q_EMIT chosen(QUrl(files.first()).toLocalFile());
  } else if (response == cancelledByUser) {
    Q_EMIT cancelled();
  } else {
    Q_EMIT unavailable();
  }
}

}  // namespace vek
