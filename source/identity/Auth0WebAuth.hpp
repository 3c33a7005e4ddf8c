// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "identity/Auth0Configuration.hpp"
#include "identity/Credentials.hpp"
#include "identity/LoginTransaction.hpp"
#include "identity/Telemetry.hpp"
#include "identity/TransactionStore.hpp"
#include "platform/HTTPClient.hpp"
#include "platform/Log.hpp"
#include "platform/WebAuthenticationSession.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// The login on the web: the identity provider's page in the user's browser, by the authorization
/// code flow with PKCE. Its fields are set before `start`.
class Auth0WebAuth {
 public:
  /// Makes the session that shows a page, in the place of the platform's.
  using Provider = std::function<std::shared_ptr<WebAuthenticationSession>(
      std::string url, std::string callbackScheme, WebAuthenticationSession::Completion)>;

  Auth0WebAuth(std::string clientId, std::string url, HTTPClient session);

  /// At the provider that the main bundle's "Auth0.plist" names. Stops the process when it does
  /// not.
  [[nodiscard]] static Auth0WebAuth ofMainBundle(HTTPClient session = HTTPClient::shared());

  /// Ends with credentials whose ID token was checked. Throws WebAuthError. Stopping the task gives
  /// the login up.
  [[nodiscard]] Task<Credentials> start();

  /// Where the provider sends the browser to in the end; nothing without a host or an identifier.
  /// Made at the first use and kept.
  [[nodiscard]] std::optional<std::string> const& redirectURL();

  std::string clientId;
  std::string url;
  HTTPClient session;
  TransactionStore* storage = &TransactionStore::shared();
  Telemetry telemetry = {};
  std::optional<Logger> logger = {};
  std::string platform = "macos";
  std::string responseType = "code";
  /// Goes into the authorize URL over what stands there.
  std::map<std::string, std::string> parameters = {};
  /// The redirect is one of https, where the platform hands those over.
  bool https = false;
  /// The page sees no cookies of the user's browser.
  bool ephemeralSession = false;
  std::string issuer;
  /// In seconds, as the check of the ID token takes it.
  int leeway = 60000;
  std::optional<std::string> nonce = {};
  std::optional<int> maxAge = {};
  std::optional<std::string> organization = {};
  std::optional<std::string> invitationURL = {};
  std::optional<std::string> overrideAuthorizeURL = {};
  Provider provider = nullptr;
  /// Called when the page has ended well.
  std::function<void()> onCloseCallback = nullptr;

 private:
  static Task<Credentials> logIn(Auth0WebAuth webAuth);

  [[nodiscard]] std::shared_ptr<LoginTransaction> makeTransaction(
      LoginTransaction::Callback callback) const;
  [[nodiscard]] std::string authorizeURL(std::string const& state, PKCE const& handler) const;
  [[nodiscard]] std::shared_ptr<ASUserAgent> makeUserAgent(std::string authorizeURL) const;
  void readInvitation();

  std::optional<std::string> invitation_;
  std::optional<std::string> redirectURL_;
};

}  // namespace vek
