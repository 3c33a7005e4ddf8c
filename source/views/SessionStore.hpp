// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "features/SessionFeature.hpp"
#include "views/ObservedStore.hpp"

namespace vek {

/// The signed-in user, for views.
class SessionStore : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by its parent store")
  Q_PROPERTY(bool hasCredentials READ hasCredentials NOTIFY hasCredentialsChanged)
  /// Empty without credentials.
  Q_PROPERTY(QString accessToken READ accessToken NOTIFY accessTokenChanged)
  Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
  Q_PROPERTY(bool hasError READ hasError NOTIFY errorChanged)
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)

 public:
  using Observed = ObservedStore<SessionFeature::State, SessionFeature::Action>;
  explicit SessionStore(Observed::Shared store);

  [[nodiscard]] bool hasCredentials() const { return state().credentials.has_value(); }
  [[nodiscard]] QString accessToken() const;
  [[nodiscard]] bool isLoading() const { return state().isLoading; }
  [[nodiscard]] bool hasError() const { return state().error.has_value(); }
  [[nodiscard]] QString error() const;

  Q_INVOKABLE void loginButtonClicked();
  Q_INVOKABLE void dismissErrorButtonClicked();
  Q_INVOKABLE void logout();

  /// Puts the token onto the pasteboard in the form in which requests carry it.
  Q_INVOKABLE void copyAccessToken() const;

  Q_SIGNAL void hasCredentialsChanged();
  Q_SIGNAL void accessTokenChanged();
  Q_SIGNAL void isLoadingChanged();
  Q_SIGNAL void errorChanged();

 private:
  [[nodiscard]] SessionFeature::State const& state() const { return store_.state(); }

  Observed store_;
};

}  // namespace vek
