// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QUrl>

#include "views/Pane.hpp"

namespace vek {

/// A pane as QML reads it: what its item in the toolbar shows, beside its view.
class PaneHostingController : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made with its window")
  Q_PROPERTY(QString identifier READ identifier CONSTANT)
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QString toolbarIcon READ toolbarIcon CONSTANT)
  Q_PROPERTY(QString tooltip READ tooltip CONSTANT)
  /// The file of the view, and what it is made with.
  Q_PROPERTY(QUrl view READ view CONSTANT)
  Q_PROPERTY(QVariantMap viewProperties READ viewProperties CONSTANT)

 public:
  explicit PaneHostingController(Pane pane);

  [[nodiscard]] QString identifier() const { return pane_.identifier; }
  [[nodiscard]] QString title() const { return pane_.title; }
  [[nodiscard]] QString toolbarIcon() const { return pane_.toolbarIcon; }
  [[nodiscard]] QString tooltip() const { return pane_.tooltip; }
  [[nodiscard]] QUrl view() const;
  [[nodiscard]] QVariantMap viewProperties() const { return pane_.contentProperties; }

 private:
  Pane pane_;
};

}  // namespace vek
