// SPDX-License-Identifier: MIT
#include "views/TranscriptsModel.hpp"

#include <utility>

#include "views/Text.hpp"
#include "views/TextState.hpp"

namespace vek {

namespace {

/// More than the few lines of a cell can hold. A long text need not be laid out for them.
constexpr std::size_t previewBytes = 1200;

bool isInsideCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

QString preview(TranscriptContentState const& state) {
  auto const* content = state.as<TranscriptContentState::content>();
  if (!content) return {};
  auto const& text = content->text.string();
  auto end = std::min(text.size(), previewBytes);
  while (end < text.size() && isInsideCharacter(text[end])) ++end;
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(end));
}

}  // namespace

void TranscriptsModel::setCustomers(IdentifiedArray<vek::Customer> customers) {
  customers_ = std::move(customers);
  if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Role::Customer});
}

QVariant TranscriptsModel::data(QModelIndex const& index, int role) const {
  auto const& transcript = element(index.row());
  switch (role) {
    case Role::Store:
      return QVariant::fromValue(&store_);
    case Role::TextState:
      return textState(transcript.textState);
    case Role::Preview:
      return preview(transcript.textState);
    case Role::IsAssigned:
      return transcript.customerID.has_value();
    case Role::Customer:
      return customer(transcript);
    case Role::StartDate:
      return text(transcript.startDate);
    default:
      return {};
  }
}

QHash<int, QByteArray> TranscriptsModel::roleNames() const {
  return {{Role::Store, "store"},       {Role::TextState, "textState"},
          {Role::Preview, "preview"},   {Role::IsAssigned, "isAssigned"},
          {Role::Customer, "customer"}, {Role::StartDate, "startDate"}};
}

QString TranscriptsModel::customer(Transcript const& transcript) const {
  if (!transcript.customerID) return {};
  auto const* known = customers_.find(*transcript.customerID);
  return QString::fromStdString(known ? known->name : transcript.customerID->upperCaseText());
}

}  // namespace vek
