// SPDX-License-Identifier: MIT
#include "support/ScriptedApp.hpp"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "runtime/Describe.hpp"

namespace vek::test {

struct ScriptedApp::Script {
  AppFeature::State next;
  QStringList sent;
};

namespace {

using State = AppFeature::State;
using Action = AppFeature::Action;

struct Reducer {
  std::shared_ptr<AppFeature::State> next;
  std::shared_ptr<QStringList> sent;

  Effect<Action> reduce(State& state, Action const& action) const {
    if (std::holds_alternative<Action::start>(action.value)) {
      state = *next;
    } else {
      sent->append(QString::fromStdString(describe(action)));
    }
    return Effect<Action>::none();
  }
};

std::optional<ErrorObject> error(QVariant const& text) {
  if (!text.isValid()) return std::nullopt;
  return ErrorObject(std::make_exception_ptr(std::runtime_error(text.toString().toStdString())));
}

Recording recording(QVariantMap const& facts) {
  using std::chrono::seconds;
  return {.transcript = SharedText(facts["recording"].toString().toStdString()),
          .startDate = std::chrono::system_clock::now() - seconds(facts["elapsed"].toInt())};
}

IdentifiedArray<Transcript> transcripts(int count, int unassigned) {
  std::vector<Transcript> list;
  for (int i = 0; i < count; ++i) {
    Transcript transcript{.id = UUID::random(), .startDate = Date(std::chrono::days(20000 + i))};
    if (i >= unassigned) transcript.customerID = UUID::random();
    list.push_back(std::move(transcript));
  }
  return IdentifiedArray(std::move(list));
}

}  // namespace

ScriptedApp::ScriptedApp() : script_(std::make_shared<Script>()) {
  Reducer const reducer{{script_, &script_->next}, {script_, &script_->sent}};
  root_ = Store<State, Action>::make(State{}, [&] { return reducer; });
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
        Credentials({.accessToken = "token", .tokenType = "Bearer", .expiresIn = {}});
  state.session.isLoading = isTrue("loggingIn");
  state.session.error = error(facts["sessionError"]);
  state.permissions.hasRecordingPermissions = isTrue("permitted");
  state.permissions.isLoading = isTrue("asking");
  state.permissions.error = error(facts["permissionsError"]);
  if (facts.contains("recording")) state.recording.recording = recording(facts);
  state.recording.isLoading = isTrue("starting");
  state.recording.error = error(facts["recordingError"]);
  state.transcripts.transcripts =
      transcripts(facts["transcripts"].toInt(), facts["unassigned"].toInt());
  state.transcripts.isLoading = isTrue("refreshing");
  state.transcripts.error = error(facts["transcriptsError"]);
  script_->next = std::move(state);
  root_->send(Action::start{});
}

void ScriptedApp::forgetSent() {
  script_->sent.clear();
}

}  // namespace vek::test
