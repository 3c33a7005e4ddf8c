// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

namespace vek {

/// Takes texts out of the program: to the clipboard, or to a file among the user's documents.
class TranscriptFile : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  Q_INVOKABLE void copy(QString const& text) const;
  /// Writes a new file of that name and ending, with a number behind the name when there is one
  /// already. Returns its path; an empty text when it could not be written.
  Q_INVOKABLE QString save(QString const& text, QString const& name, QString const& ending) const;
};

}  // namespace vek
