// SPDX-License-Identifier: MIT
#include "views/SessionStore.hpp"

#include <QClipboard>
#include <QGuiApplication>

#include <utility>

#include "views/Text.hpp"

namespace vek {

using State = SessionFeature::State;
using Action = SessionFeature::Action;

SessionStore::SessionStore(Observed::Shared store) : store_(std::move(store)) {
  store_.notify<[](State const& state) { return state.credentials.has_value(); }>(
      this, &SessionStore::hasCredentialsChanged);
  store_.notify<&State::credentials>(this, &SessionStore::accessTokenChanged);
  store_.notify<&State::isLoading>(this, &SessionStore::isLoadingChanged);
  store_.notify<&State::error>(this, &SessionStore::errorChanged);
}

QString SessionStore::accessToken() const {
  auto const& credentials = state().credentials;
  return credentials ? QString::fromStdString(credentials->accessToken()) : QString();
}

QString SessionStore::error() const {
  return text(state().error);
}

void SessionStore::loginButtonClicked() {
  store_.send(Action::loginButtonClicked{});
}

void SessionStore::dismissErrorButtonClicked() {
  store_.send(Action::dismissErrorButtonClicked{});
}

void SessionStore::logout() {
  store_.send(Action::logout{});
}

void SessionStore::copyAccessToken() const {
  auto& pasteboard = *QGuiApplication::clipboard();
  pasteboard.clear();
  pasteboard.setText(QStringLiteral("Bearer ") + accessToken());
}

}  // namespace vek
