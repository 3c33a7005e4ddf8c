// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

namespace vek {

/// Takes texts out of the program: to the clipboard, or to a file.
class TranscriptFile : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  /// Where the user's documents are.
  Q_PROPERTY(QString folder READ folder CONSTANT)

 public:
  [[nodiscard]] QString folder() const;

  Q_INVOKABLE void copy(QString const& text) const;

  /// The file that a user means by a name: in their documents unless it says otherwise.
  Q_INVOKABLE [[nodiscard]] QString pathOf(QString const& name) const;
  Q_INVOKABLE [[nodiscard]] bool exists(QString const& path) const;
  /// Writes the whole text, or leaves what was there. Returns what kept it from being written.
  Q_INVOKABLE [[nodiscard]] QString write(QString const& text, QString const& path) const;
};

}  // namespace vek
