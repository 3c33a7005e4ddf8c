// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "features/MenuFeature.hpp"
#include "views/ObservedStore.hpp"

namespace vek {

/// The entries of the program's menu, for views.
class MenuStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by its parent store")

 public:
  using Observed = ObservedStore<MenuFeature::State, MenuFeature::Action>;
  explicit MenuStore(Observed::Shared store);

  Q_INVOKABLE void settingsMenuItemClicked();
  Q_INVOKABLE void quitMenuItemClicked();
  Q_INVOKABLE void checkForUpdatesMenuItemClicked();
  Q_INVOKABLE void aboutMenuItemClicked();

 private:
  Observed store_;
};

}  // namespace vek
