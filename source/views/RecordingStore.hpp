// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "features/RecordingFeature.hpp"
#include "views/ObservedStore.hpp"

namespace vek {

/// The recording under way, for views.
class RecordingStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by its parent store")
  Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
  Q_PROPERTY(QString displayedTranscript READ displayedTranscript NOTIFY displayedTranscriptChanged)
  Q_PROPERTY(bool hasError READ hasError NOTIFY errorChanged)
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)

 public:
  using Observed = ObservedStore<RecordingFeature::State, RecordingFeature::Action>;
  explicit RecordingStore(Observed::Shared store);

  [[nodiscard]] bool isRecording() const { return state().recording.has_value(); }
  [[nodiscard]] QString displayedTranscript() const;
  [[nodiscard]] bool hasError() const { return state().error.has_value(); }
  [[nodiscard]] QString error() const;

  /// By the clock of this moment: a view asks again each second.
  Q_INVOKABLE [[nodiscard]] QString elapsedTimeText() const;

  Q_INVOKABLE void recordButtonClicked();
  Q_INVOKABLE void dismissErrorButtonClicked();

  Q_SIGNAL void isRecordingChanged();
  Q_SIGNAL void displayedTranscriptChanged();
  Q_SIGNAL void errorChanged();

 private:
  [[nodiscard]] RecordingFeature::State const& state() const { return store_.state(); }

  Observed store_;
};

}  // namespace vek
