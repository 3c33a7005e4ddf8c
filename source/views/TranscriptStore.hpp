// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>

#include "features/TranscriptFeature.hpp"
#include "records/TranscriptDocument.hpp"
#include "views/ObservedStore.hpp"
#include "views/TextState.hpp"

namespace vek {

/// One opened transcript, for the view in its window.
class TranscriptStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made with its window")
  Q_PROPERTY(vek::TextState::Value textState READ textState NOTIFY textStateChanged)
  Q_PROPERTY(QString text READ text NOTIFY textStateChanged)
  /// What kept the text from coming.
  Q_PROPERTY(QString textError READ textError NOTIFY textStateChanged)
  Q_PROPERTY(vek::TextState::Value analysisState READ analysisState NOTIFY analysisStateChanged)
  Q_PROPERTY(QString analysis READ analysis NOTIFY analysisStateChanged)
  Q_PROPERTY(QString analysisError READ analysisError NOTIFY analysisStateChanged)
  /// Whether the transcript has a customer.
  Q_PROPERTY(bool isAssigned READ isAssigned NOTIFY isAssignedChanged)
  /// The names of those that it can be assigned to, and which of them is chosen, or -1.
  Q_PROPERTY(QStringList customers READ customers CONSTANT)
  Q_PROPERTY(int selectedCustomer READ selectedCustomer NOTIFY selectedCustomerChanged)
  Q_PROPERTY(bool assigningCustomer READ assigningCustomer NOTIFY assigningCustomerChanged)
  /// When the transcript began, as a part of a file's name.
  Q_PROPERTY(QString fileName READ fileName CONSTANT)

 public:
  using Observed = ObservedStore<TranscriptFeature::State, TranscriptFeature::Action>;
  explicit TranscriptStore(Observed::Shared store, QObject* parent = nullptr);

  [[nodiscard]] TextState::Value textState() const;
  [[nodiscard]] QString text() const;
  [[nodiscard]] QString textError() const;
  [[nodiscard]] TextState::Value analysisState() const;
  [[nodiscard]] QString analysis() const;
  [[nodiscard]] QString analysisError() const;
  [[nodiscard]] bool isAssigned() const { return transcript().customerID.has_value(); }
  [[nodiscard]] QStringList customers() const;
  [[nodiscard]] int selectedCustomer() const;
  [[nodiscard]] bool assigningCustomer() const { return store_.state().assigningCustomer; }
  [[nodiscard]] QString fileName() const;

  /// All of it, to be taken elsewhere.
  Q_INVOKABLE [[nodiscard]] QString markdown() const;
  Q_INVOKABLE [[nodiscard]] QString plainText() const;

  Q_INVOKABLE void transcriptDidAppear();
  /// Chooses the customer at a position, or none with -1.
  Q_INVOKABLE void customerPickerClicked(int position);
  Q_INVOKABLE void assignCustomerButtonClicked();
  Q_INVOKABLE void refetchContentButtonClicked();

  Q_SIGNAL void textStateChanged();
  Q_SIGNAL void analysisStateChanged();
  Q_SIGNAL void isAssignedChanged();
  Q_SIGNAL void selectedCustomerChanged();
  Q_SIGNAL void assigningCustomerChanged();

 private:
  [[nodiscard]] TranscriptDocument document() const;
  [[nodiscard]] Transcript const& transcript() const { return store_.state().transcript; }

  Observed store_;
};

}  // namespace vek
