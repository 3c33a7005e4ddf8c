// SPDX-License-Identifier: MIT
#include "views/TranscriptStore.hpp"

#include <cstddef>
#include <optional>
#include <utility>

#include "markdown/MarkdownDocument.hpp"
#include "views/Text.hpp"

namespace vek {

using State = TranscriptFeature::State;
using Action = TranscriptFeature::Action;

namespace {

QString contentOf(TranscriptContentState const& state) {
  auto const* content = state.as<TranscriptContentState::content>();
  return content ? QString::fromStdString(content->text) : QString();
}

QString errorOf(TranscriptContentState const& state) {
  auto const* failure = state.as<TranscriptContentState::error>();
  return failure ? text(failure->object) : QString();
}

}  // namespace

TranscriptStore::TranscriptStore(Observed::Shared store, QObject* parent)
    : QObject(parent), store_(std::move(store)) {
  store_.notify<[](State const& state) { return state.transcript.textState; }>(
      this, &TranscriptStore::textStateChanged);
  store_.notify<[](State const& state) { return state.transcript.analysisState; }>(
      this, &TranscriptStore::analysisStateChanged);
  store_.notify<[](State const& state) { return state.transcript.customerID; }>(
      this, &TranscriptStore::isAssignedChanged);
  store_.notify<&State::selectedCustomer>(this, &TranscriptStore::selectedCustomerChanged);
  store_.notify<&State::assigningCustomer>(this, &TranscriptStore::assigningCustomerChanged);
}

TextState::Value TranscriptStore::textState() const {
  return vek::textState(transcript().textState);
}

QString TranscriptStore::text() const {
  return contentOf(transcript().textState);
}

QString TranscriptStore::textError() const {
  return errorOf(transcript().textState);
}

TextState::Value TranscriptStore::analysisState() const {
  return vek::textState(transcript().analysisState);
}

QString TranscriptStore::analysis() const {
  return contentOf(transcript().analysisState);
}

QString TranscriptStore::analysisError() const {
  return errorOf(transcript().analysisState);
}

QStringList TranscriptStore::customers() const {
  QStringList names;
  for (auto const& customer : store_.state().customers)
    names.append(QString::fromStdString(customer.name));
  return names;
}

int TranscriptStore::selectedCustomer() const {
  auto const& customers = store_.state().customers;
  auto const& selected = store_.state().selectedCustomer;
  for (std::size_t i = 0; selected && i < customers.size(); ++i)
    if (customers[i].id == selected->id) return static_cast<int>(i);
  return -1;
}

QString TranscriptStore::fileName() const {
  return fileNameOf(transcript().startDate);
}

TranscriptDocument TranscriptStore::document() const {
  auto const& id = transcript().customerID;
  auto const* customer = id ? store_.state().customers.find(*id) : nullptr;
  return {.startDate = transcript().startDate,
          .customer = customer ? customer->name : std::string(),
          .text = text().toStdString(),
          .analysis = analysis().toStdString()};
}

QString TranscriptStore::markdown() const {
  return QString::fromStdString(document().markdown());
}

QString TranscriptStore::plainText() const {
  auto plain = document();
  plain.analysis = MarkdownDocument::parse(plain.analysis).plainText();
  return QString::fromStdString(plain.plainText());
}

void TranscriptStore::transcriptDidAppear() {
  store_.send(Action::transcriptDidAppear{});
}

void TranscriptStore::customerPickerClicked(int position) {
  auto const& customers = store_.state().customers;
  auto const isNone = position < 0 || static_cast<std::size_t>(position) >= customers.size();
  store_.send(Action::customerPickerClicked{
      isNone ? std::nullopt : std::optional(customers[static_cast<std::size_t>(position)])});
}

void TranscriptStore::assignCustomerButtonClicked() {
  store_.send(Action::assignCustomerButtonClicked{});
}

void TranscriptStore::refetchContentButtonClicked() {
  store_.send(Action::refetchContentButtonClicked{});
}

}  // namespace vek
