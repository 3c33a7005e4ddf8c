// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include "views/UpdatePanel.hpp"

namespace vek::test {

/// A panel of updates that shows what a test says, and what the user does there.
class ScriptedUpdates : public QObject {
  Q_OBJECT
  Q_PROPERTY(vek::UpdatePanel* panel READ panel CONSTANT)
  /// What the updater and the browser were told, oldest first: "skip", "open https://vek.test".
  Q_PROPERTY(QStringList calls READ calls)

 public:
  [[nodiscard]] UpdatePanel* panel() { return &panel_; }
  [[nodiscard]] QStringList calls() const { return calls_; }

  /// Shows one of these, of an installation of version 1.0:
  ///
  ///     checking: true      upToDate: true      failure: "detail"
  ///     version: "1.1", and with it notes and packageManager
  Q_INVOKABLE void show(QVariantMap const& facts);
  Q_INVOKABLE void forgetCalls() { calls_.clear(); }
  Q_INVOKABLE void setBrowser(bool hasBrowser) { hasBrowser_ = hasBrowser; }

 private:
  Task<> open(std::string url);

  QStringList calls_;
  bool hasBrowser_ = true;
  UpdatePanel panel_{[this](std::string url) { return open(std::move(url)); }};
};

}  // namespace vek::test
