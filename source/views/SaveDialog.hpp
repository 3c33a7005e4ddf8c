// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QQuickWindow>
#include <QString>
#include <QVariantMap>

namespace vek {

/// The desktop's own dialog that asks under which name a file is to be kept, and whether it may
/// replace another. Nothing of it is there until it is opened.
class SaveDialog : public QObject {
  Q_OBJECT
  QML_ELEMENT

 public:
  SaveDialog() = default;
  SaveDialog(SaveDialog const&) = delete;
  SaveDialog& operator=(SaveDialog const&) = delete;
  ~SaveDialog() override { close(); }

  /// Proposes a name in a folder. One of the signals follows, unless it is opened again before:
  /// then the dialog that waits is closed.
  Q_INVOKABLE void open(QQuickWindow* window, QString const& title, QString const& folder,
                        QString const& name);

  Q_SIGNAL void chosen(QString const& path);
  Q_SIGNAL void cancelled();
  /// This desktop has no such dialog.
  Q_SIGNAL void unavailable();

 private:
  Q_SLOT void responded(uint response, QVariantMap const& results);
  void listen(QString const& request);
  void close();

  QString request_;
};

}  // namespace vek
