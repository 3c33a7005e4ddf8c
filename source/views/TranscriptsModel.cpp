// SPDX-License-Identifier: MIT
#include "views/TranscriptsModel.hpp"

#include "views/Text.hpp"
#include "views/TextState.hpp"

namespace vek {

namespace {

QString said(TranscriptContentState const& state) {
  auto const* content = state.as<TranscriptContentState::content>();
  return content ? QString::fromStdString(content->text.string()) : QString();
}

QString identifier(std::optional<UUID> const& customerID) {
  return customerID ? QString::fromStdString(customerID->upperCaseText()) : QString();
}

}  // namespace

void TranscriptsModel::namesChanged() {
  if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Role::CustomerID});
}

QVariant TranscriptsModel::data(QModelIndex const& index, int role) const {
  auto const& transcript = element(index.row());
  switch (role) {
    case Role::Store:
      return QVariant::fromValue(&store_);
    case Role::TextState:
      return textState(transcript.textState);
    case Role::Text:
      return said(transcript.textState);
    case Role::CustomerID:
      return identifier(transcript.customerID);
    case Role::StartDate:
      return text(transcript.startDate);
    default:
      return {};
  }
}

QHash<int, QByteArray> TranscriptsModel::roleNames() const {
  return {{Role::Store, "store"},
          {Role::TextState, "textState"},
          {Role::Text, "text"},
          {Role::CustomerID, "customerID"},
          {Role::StartDate, "startDate"}};
}

}  // namespace vek
