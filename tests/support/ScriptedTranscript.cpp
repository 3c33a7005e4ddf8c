// SPDX-License-Identifier: MIT
#include "support/ScriptedTranscript.hpp"

#include <stdexcept>
#include <string>
#include <utility>

#include "support/Script.hpp"

namespace vek::test {

namespace {

using State = TranscriptFeature::State;
using Action = TranscriptFeature::Action;

UUID const known = UUID::parse("00000000-0000-0000-0000-000000000001").value();

TranscriptContentState content(QVariantMap const& facts, char const* text, char const* loading,
                               char const* error) {
  if (facts[loading].toBool()) return TranscriptContentState::loading();
  if (facts.contains(error)) {
    auto const reason = facts[error].toString().toStdString();
    return TranscriptContentState::error{
        ErrorObject(std::make_exception_ptr(std::runtime_error(reason)))};
  }
  if (!facts.contains(text)) return TranscriptContentState::initial();
  return TranscriptContentState::content{facts[text].toString().toStdString()};
}

State initial() {
  State state{.transcript = {.id = known, .startDate = Date(std::chrono::days(20000))}};
  state.customers.set({known, "Harbour Bakery and Sons"});
  state.customers.set({UUID::parse("00000000-0000-0000-0000-000000000002").value(), "Northwind"});
  return state;
}

}  // namespace

/// No view sends what happens inside.
struct ScriptedTranscript::Script : test::Script<State, Action, Action::internal> {};

ScriptedTranscript::ScriptedTranscript() : script_(std::make_shared<Script>()) {
  root_ = Store<State, Action>::make(initial(), [&] { return Script::Reducer{script_}; });
  store_ = std::make_unique<TranscriptStore>(root_);
}

QStringList ScriptedTranscript::sent() const {
  return script_->sent;
}

void ScriptedTranscript::show(QVariantMap const& facts) {
  auto state = initial();
  state.transcript.textState = content(facts, "text", "loading", "error");
  state.transcript.analysisState = content(facts, "analysis", "loadingAnalysis", "analysisError");
  if (facts["assigned"].toBool()) state.transcript.customerID = known;
  state.assigningCustomer = facts["assigning"].toBool();
  if (facts.contains("selected"))
    state.selectedCustomer = state.customers[static_cast<std::size_t>(facts["selected"].toInt())];
  state.identity = root_->state().identity;
  script_->next = std::move(state);
  root_->send(Action::internal{TranscriptFeature::InternalAction::setError{}});
}

void ScriptedTranscript::forgetSent() {
  script_->sent.clear();
}

}  // namespace vek::test
