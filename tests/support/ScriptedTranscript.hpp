// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>

#include "views/TranscriptStore.hpp"

namespace vek::test {

/// The store of an opened transcript whose state a test sets and whose actions it reads.
class ScriptedTranscript : public QObject {
  Q_OBJECT
  Q_PROPERTY(vek::TranscriptStore* store READ store CONSTANT)
  /// What was sent, oldest first: "assignCustomerButtonClicked".
  Q_PROPERTY(QStringList sent READ sent)

 public:
  ScriptedTranscript();

  [[nodiscard]] TranscriptStore* store() { return store_.get(); }
  [[nodiscard]] QStringList sent() const;

  /// Puts the state that `facts` describe in place of the present one:
  ///
  ///     text, analysis             what is there; without them nothing was fetched yet
  ///     loading, loadingAnalysis   true while it is fetched
  ///     error, analysisError       what kept it from coming
  ///     assigned, assigning        true or false
  ///     selected                   the position of the chosen customer, of two
  Q_INVOKABLE void show(QVariantMap const& facts);
  Q_INVOKABLE void forgetSent();

 private:
  struct Script;

  std::shared_ptr<Script> script_;
  TranscriptStore::Observed::Shared root_;
  std::unique_ptr<TranscriptStore> store_;
};

}  // namespace vek::test
