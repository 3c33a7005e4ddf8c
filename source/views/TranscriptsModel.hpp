// SPDX-License-Identifier: MIT
#pragma once

#include "records/Customer.hpp"
#include "records/Transcript.hpp"
#include "views/IdentifiedArrayModel.hpp"

namespace vek {

/// The rows of the list of transcripts, as cells show them.
class TranscriptsModel : public IdentifiedArrayModel<Transcript> {
 public:
  enum Role { Store = Qt::UserRole, TextState, Preview, IsAssigned, Customer, StartDate };

  /// `store` is what the rows send their actions to.
  explicit TranscriptsModel(QObject& store) : store_(store) {}

  /// Whose names rows show.
  void setCustomers(IdentifiedArray<vek::Customer> customers);

  [[nodiscard]] QVariant data(QModelIndex const& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 private:
  [[nodiscard]] QString customer(Transcript const& transcript) const;

  QObject& store_;
  IdentifiedArray<vek::Customer> customers_;
};

}  // namespace vek
