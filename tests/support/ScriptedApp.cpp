// SPDX-License-Identifier: MIT
#include "support/ScriptedApp.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/Script.hpp"

namespace vek::test {

namespace {

using State = AppFeature::State;
using Action = AppFeature::Action;

std::optional<ErrorObject> error(QVariant const& text) {
  if (!text.isValid()) return std::nullopt;
  return ErrorObject(std::make_exception_ptr(std::runtime_error(text.toString().toStdString())));
}

Recording recording(QVariantMap const& facts) {
  using std::chrono::seconds;
  return {.transcript = SharedText(facts["recording"].toString().toStdString()),
          .startDate = std::chrono::system_clock::now() - seconds(facts["elapsed"].toInt())};
}

/// The same in every state, so that a view keeps its rows.
UUID numbered(std::size_t number) {
  return UUID::parse(fmt::format("00000000-0000-0000-0000-{:012}", number)).value();
}

/// As long as tokens are.
std::string const token =
    "eyJhbGciOiJSUzI1NiIsInR5cCI6IkpXVCIsImtpZCI6ImV4YW1wbGUifQ.eyJzdWIiOiJleGFtcGxlIn0.c2lnbmVk";
Customer const knownCustomer{numbered(1), "Harbour Bakery and Sons"};
UUID const unknownCustomer = numbered(2);

TranscriptContentState textState(QVariantMap const& cell) {
  using TextState = TranscriptContentState;
  if (cell.contains("text")) return TextState::content{cell["text"].toString().toStdString()};
  if (cell["loading"].toBool()) return TextState::loading();
  if (cell["failed"].toBool()) return TextState::error{error(QStringLiteral("refused")).value()};
  return TextState::initial();
}

std::optional<UUID> customerOf(QVariantMap const& cell) {
  if (!cell.contains("customer")) return std::nullopt;
  return cell["customer"] == QStringLiteral("known") ? knownCustomer.id : unknownCustomer;
}

IdentifiedArray<Transcript> transcripts(QVariantList const& cells) {
  constexpr std::chrono::hours newest(493'000);
  std::vector<Transcript> list;
  for (std::size_t row = 0; auto const& given : cells) {
    auto const cell = given.toMap();
    list.push_back({.id = numbered(row),
                    .startDate = Date(newest - std::chrono::hours(7) * row++),
                    .customerID = customerOf(cell),
                    .textState = textState(cell)});
  }
  return IdentifiedArray(std::move(list));
}

QVariantList manyTranscripts(int count, int unassigned) {
  QVariantMap const assigned{{"text", "Hello"}, {"customer", "known"}};
  QVariantList cells(count, assigned);
  std::fill_n(cells.begin(), unassigned, QVariantMap{{"text", "Hello"}});
  return cells;
}

}  // namespace

/// No view starts the program.
struct ScriptedApp::Script : test::Script<State, Action, Action::start> {};

ScriptedApp::ScriptedApp() : script_(std::make_shared<Script>()) {
  root_ = Store<State, Action>::make(State{}, [&] { return Script::Reducer{script_}; });
  store_ = std::make_unique<AppStore>(root_);
}

QStringList ScriptedApp::sent() const {
  return script_->sent;
}

void ScriptedApp::show(QVariantMap const& facts) {
  auto const isTrue = [&](char const* fact) { return facts[fact].toBool(); };
  State state;
  if (isTrue("loggedIn"))
    state.session.credentials =
        Credentials({.accessToken = token, .tokenType = "Bearer", .expiresIn = {}});
  state.session.isLoading = isTrue("loggingIn");
  state.session.error = error(facts["sessionError"]);
  state.permissions.hasRecordingPermissions = isTrue("permitted");
  state.permissions.isLoading = isTrue("asking");
  state.permissions.error = error(facts["permissionsError"]);
  if (facts.contains("recording")) state.recording.recording = recording(facts);
  state.recording.isLoading = isTrue("starting");
  state.recording.error = error(facts["recordingError"]);
  auto const count = facts["transcripts"].toInt();
  state.transcripts.transcripts =
      transcripts(facts.contains("cells") ? facts["cells"].toList()
                                          : manyTranscripts(count, facts["unassigned"].toInt()));
  if (!isTrue("nameless")) state.transcripts.customers.set(knownCustomer);
  state.menu.isShowingSettings = isTrue("settings");
  state.transcripts.isLoading = isTrue("refreshing");
  state.transcripts.error = error(facts["transcriptsError"]);
  script_->next = std::move(state);
  root_->send(Action::start{});
}

void ScriptedApp::forgetSent() {
  script_->sent.clear();
}

}  // namespace vek::test
