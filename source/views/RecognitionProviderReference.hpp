// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

namespace vek {

/// The stored choice of the recogniser, to be read and changed by a view.
class RecognitionProviderReference : public QObject {
  Q_OBJECT
  QML_ELEMENT
  /// A `Provider`.
  Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

 public:
  /// In the order in which a user chooses among them.
  enum Provider { Apple, Deepgram };
  Q_ENUM(Provider)

  [[nodiscard]] int value() const;
  /// Stores the choice at once. Without a place to store it the log tells why, and it stays as it
  /// was.
  void setValue(int value);

  Q_SIGNAL void valueChanged();
};

}  // namespace vek
