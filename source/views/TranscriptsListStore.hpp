// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "features/TranscriptsListFeature.hpp"
#include "views/ObservedStore.hpp"
#include "views/TranscriptsModel.hpp"

namespace vek {

/// The transcripts that the user can browse, for views.
class TranscriptsListStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by its parent store")
  Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
  Q_PROPERTY(bool hasError READ hasError NOTIFY errorChanged)
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY isEmptyChanged)
  Q_PROPERTY(QObject* transcripts READ transcripts CONSTANT)
  /// How many transcripts have no customer.
  Q_PROPERTY(int unassignedCount READ unassignedCount NOTIFY unassignedCountChanged)

 public:
  using Observed = ObservedStore<TranscriptsListFeature::State, TranscriptsListFeature::Action>;
  explicit TranscriptsListStore(Observed::Shared store);

  [[nodiscard]] bool isLoading() const { return state().isLoading; }
  [[nodiscard]] bool hasError() const { return state().error.has_value(); }
  [[nodiscard]] QString error() const;
  [[nodiscard]] bool isEmpty() const { return state().transcripts.empty(); }
  [[nodiscard]] QObject* transcripts() { return &transcripts_; }
  [[nodiscard]] int unassignedCount() const { return unassignedCount_; }

  /// The name of the customer with this identifier, or the identifier of one who is not known.
  Q_INVOKABLE [[nodiscard]] QString customerName(QString const& identifier) const;
  /// Opens the transcript of a row.
  Q_INVOKABLE void openTrasnscript(int row);
  Q_INVOKABLE void refetchContentButtonClicked();

  Q_SIGNAL void isLoadingChanged();
  Q_SIGNAL void errorChanged();
  Q_SIGNAL void isEmptyChanged();
  Q_SIGNAL void unassignedCountChanged();

 private:
  using Transcripts = IdentifiedArray<Transcript>;

  [[nodiscard]] TranscriptsListFeature::State const& state() const { return store_.state(); }
  void transcriptsChanged();
  void customersChanged();

  Observed store_;
  TranscriptsModel transcripts_{*this};
  Transcripts counted_;
  int unassignedCount_ = 0;
};

}  // namespace vek
