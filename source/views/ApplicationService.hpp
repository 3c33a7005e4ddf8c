// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <map>

namespace vek {

/// The program as the desktop and other processes of the user reach it: under its name on the
/// session bus, which one process has at a time.
class ApplicationService : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  /// What is asked for, and what to do then.
  struct Requests {
    std::function<void()> activate;
    std::function<void(QString const& url)> open;
    /// By their names in the desktop entry. What one throws is told to who asked for it.
    std::map<QString, std::function<void()>> actions;
    /// The session bus, which lives as long as the session of the user, is gone.
    std::function<void()> endOfSession;
  };

  enum class Claim : std::uint8_t { granted, anotherProcessHasIt, noBus };

  /// Takes the name. Requests come once the event loop runs.
  Claim claim(Requests requests);
  /// Leaves the name to the next process.
  static void release();

  Q_SCRIPTABLE void Activate(QVariantMap const& platformData);
  Q_SCRIPTABLE void Open(QStringList const& urls, QVariantMap const& platformData);
  Q_SCRIPTABLE void ActivateAction(QString const& name, QVariantList const& parameters,
                                   QVariantMap const& platformData);

 private:
  Q_SLOT void busDisconnected();

  Requests requests_;
};

}  // namespace vek
