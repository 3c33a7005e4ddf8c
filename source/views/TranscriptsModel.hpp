// SPDX-License-Identifier: MIT
#pragma once

#include "records/Transcript.hpp"
#include "views/IdentifiedArrayModel.hpp"

namespace vek {

/// The rows of the list of transcripts, as cells show them.
class TranscriptsModel : public IdentifiedArrayModel<Transcript> {
 public:
  enum Role { Store = Qt::UserRole, TextState, Text, CustomerID, StartDate };

  /// `store` is what the rows send their actions to.
  explicit TranscriptsModel(QObject& store) : store_(store) {}

  /// The names of customers are others now: rows show them anew.
  void namesChanged();

  [[nodiscard]] QVariant data(QModelIndex const& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 private:
  QObject& store_;
};

}  // namespace vek
