// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "features/TranscriptFeature.hpp"
#include "views/ObservedStore.hpp"
#include "views/TextState.hpp"

namespace vek {

/// One opened transcript, for the view in its window.
class TranscriptStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made with its window")
  Q_PROPERTY(vek::TextState::Value textState READ textState NOTIFY textStateChanged)
  /// The text of the transcript, or what kept it from coming.
  Q_PROPERTY(QString text READ text NOTIFY textStateChanged)

 public:
  using Observed = ObservedStore<TranscriptFeature::State, TranscriptFeature::Action>;
  explicit TranscriptStore(Observed::Shared store, QObject* parent = nullptr);

  [[nodiscard]] TextState::Value textState() const;
  [[nodiscard]] QString text() const;

  Q_INVOKABLE void transcriptDidAppear();

  Q_SIGNAL void textStateChanged();

 private:
  [[nodiscard]] Transcript const& transcript() const { return store_.state().transcript; }

  Observed store_;
};

}  // namespace vek
