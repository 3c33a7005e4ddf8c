// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "features/PermissionsFeature.hpp"
#include "views/ObservedStore.hpp"

namespace vek {

/// Whether the recogniser may run, for views.
class PermissionsStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by its parent store")
  Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
  Q_PROPERTY(bool hasRecordingPermissions READ hasRecordingPermissions NOTIFY
                 hasRecordingPermissionsChanged)
  Q_PROPERTY(bool hasError READ hasError NOTIFY errorChanged)
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)

 public:
  using Observed = ObservedStore<PermissionsFeature::State, PermissionsFeature::Action>;
  explicit PermissionsStore(Observed::Shared store);

  [[nodiscard]] bool isLoading() const { return state().isLoading; }
  [[nodiscard]] bool hasRecordingPermissions() const { return state().hasRecordingPermissions; }
  [[nodiscard]] bool hasError() const { return state().error.has_value(); }
  [[nodiscard]] QString error() const;

  Q_INVOKABLE void requestPermissionsClicked();
  Q_INVOKABLE void dismissErrorButtonClicked();

  Q_SIGNAL void isLoadingChanged();
  Q_SIGNAL void hasRecordingPermissionsChanged();
  Q_SIGNAL void errorChanged();

 private:
  [[nodiscard]] PermissionsFeature::State const& state() const { return store_.state(); }

  Observed store_;
};

}  // namespace vek
