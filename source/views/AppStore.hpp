// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "features/AppFeature.hpp"
#include "views/MenuStore.hpp"
#include "views/ObservedStore.hpp"
#include "views/PermissionsStore.hpp"
#include "views/RecordingStore.hpp"
#include "views/SessionStore.hpp"
#include "views/TranscriptsListStore.hpp"

namespace vek {

/// The root store with its parts, for views.
class AppStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
  Q_PROPERTY(vek::SessionStore* session READ session CONSTANT)
  Q_PROPERTY(vek::PermissionsStore* permissions READ permissions CONSTANT)
  Q_PROPERTY(vek::RecordingStore* recording READ recording CONSTANT)
  Q_PROPERTY(vek::MenuStore* menu READ menu CONSTANT)
  Q_PROPERTY(vek::TranscriptsListStore* transcripts READ transcripts CONSTANT)

 public:
  using Observed = ObservedStore<AppFeature::State, AppFeature::Action>;
  explicit AppStore(Observed::Shared store);

  [[nodiscard]] bool isLoading() const { return store_.state().isLoading(); }
  [[nodiscard]] SessionStore* session() { return &session_; }
  [[nodiscard]] PermissionsStore* permissions() { return &permissions_; }
  [[nodiscard]] RecordingStore* recording() { return &recording_; }
  [[nodiscard]] MenuStore* menu() { return &menu_; }
  [[nodiscard]] TranscriptsListStore* transcripts() { return &transcripts_; }

  Q_SIGNAL void isLoadingChanged();

 private:
  Observed store_;
  SessionStore session_;
  PermissionsStore permissions_;
  RecordingStore recording_;
  MenuStore menu_;
  TranscriptsListStore transcripts_;
};

}  // namespace vek
