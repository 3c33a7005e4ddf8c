// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QFileSystemWatcher>
#include <QObject>

namespace vek {

/// The stored choice of the recogniser, to be read and changed by a view. Other programs of the
/// user change it too, which is told like a change by the view.
class RecognitionProviderReference : public QObject {
  Q_OBJECT
  QML_ELEMENT
  /// A `Provider`.
  Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

 public:
  /// In the order in which a user chooses among them.
  enum Provider { Apple, Deepgram };
  Q_ENUM(Provider)

  RecognitionProviderReference();

  [[nodiscard]] int value() const { return value_; }
  /// Stores the choice at once. Without a place to store it the log tells why, and it stays as it
  /// was.
  void setValue(int value);

  Q_SIGNAL void valueChanged();

 private:
  void read();

  int value_;
  QFileSystemWatcher settings_;
};

}  // namespace vek
