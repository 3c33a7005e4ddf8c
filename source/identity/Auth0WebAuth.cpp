// SPDX-License-Identifier: MIT
#include "identity/Auth0WebAuth.hpp"

#include <utility>
#include <vector>

#include <fmt/format.h>

#include "platform/Bundle.hpp"
#include "platform/URLComponents.hpp"
#include "runtime/CallbackOperation.hpp"

namespace vek {
namespace {

using enum WebAuthError::Code;
using Parameters = std::map<std::string, std::string>;

void setOrErase(Parameters& parameters, std::string const& name,
                std::optional<std::string> const& value) {
  if (value) {
    parameters.insert_or_assign(name, *value);
  } else {
    parameters.erase(name);
  }
}

/// What the end of the login page means to the login that waits for it.
void endPage(TransactionStore& storage, std::optional<std::string> const& url,
             std::exception_ptr const& error) {
  auto const transaction = storage.take();
  if (!transaction) return;
  try {
    if (error) std::rethrow_exception(error);
    if (url) return transaction->resume(*url);
    transaction->fail(WebAuthError::unknown("ASWebAuthenticationSession failed"));
  } catch (WebAuthenticationSessionError const& failure) {
    bool const isCancelled = failure.code() == WebAuthenticationSessionError::Code::canceledLogin;
    transaction->fail(isCancelled ? WebAuthError(userCancelled) : WebAuthError(other, error));
  } catch (...) {
    transaction->fail(WebAuthError(other, std::current_exception()));
  }
}

}  // namespace

Auth0WebAuth::Auth0WebAuth(std::string clientId, std::string url, HTTPClient session)
    : clientId(std::move(clientId)), url(std::move(url)), session(std::move(session)) {
  issuer = this->url;
}

Auth0WebAuth Auth0WebAuth::ofMainBundle(HTTPClient session) {
  auto configuration = Auth0Configuration::ofMainBundle();
  return {std::move(configuration.clientId), baseURL(configuration.domain), std::move(session)};
}

std::optional<std::string> const& Auth0WebAuth::redirectURL() {
  auto const identifier = Bundle::main().bundleIdentifier;
  URLComponents const base(url);
  if (redirectURL_ || !identifier || base.host().empty()) return redirectURL_;
  bool const byHTTPS = https && WebAuthenticationSession::receivesHTTPS;
  redirectURL_ =
      fmt::format("{}://{}{}{}{}/{}/callback", byHTTPS ? "https" : *identifier, base.host(),
                  base.path(), base.path().ends_with('/') ? "" : "/", platform, *identifier);
  return redirectURL_;
}

Task<Credentials> Auth0WebAuth::start() {
  (void)redirectURL();
  return logIn(*this);
}

Task<Credentials> Auth0WebAuth::logIn(Auth0WebAuth webAuth) {
  if (!webAuth.redirectURL_) throw WebAuthError(noBundleIdentifier);
  webAuth.readInvitation();
  std::shared_ptr<LoginTransaction> transaction;
  co_return co_await callbackOperation<Credentials>(
      [&](Completion<Credentials> const& completion) {
        transaction = webAuth.makeTransaction([completion](Result<Credentials> result) {
          if (result) {
            completion.resolve(std::move(result).value());
          } else {
            completion.reject(result.error());
          }
        });
        if (webAuth.storage->store(transaction)) {
          transaction->start();
        } else {
          completion.reject(std::make_exception_ptr(WebAuthError(transactionActiveAlready)));
        }
      },
      [&] { transaction->cancel(); });
}

void Auth0WebAuth::readInvitation() {
  if (!invitationURL) return;
  organization.reset();
  auto const items = URLComponents(*invitationURL).queryItems();
  for (auto const& [name, value] : items.value_or(std::vector<URLQueryItem>())) {
    if (name == "organization") organization = value;
    if (name == "invitation") invitation_ = value;
  }
  if (!organization || !invitation_) throw WebAuthError::invalidInvitationURL(*invitationURL);
}

std::shared_ptr<LoginTransaction> Auth0WebAuth::makeTransaction(
    LoginTransaction::Callback callback) const {
  auto const chosen = parameters.find("state");
  auto const state = chosen == parameters.end() ? PKCE::randomText() : chosen->second;
  PKCE handler{.authentication = {.clientId = clientId,
                                  .url = url,
                                  .telemetry = telemetry,
                                  .logger = logger,
                                  .session = session},
               .redirectURL = *redirectURL_,
               .defaults = {},
               .verifier = PKCE::randomText(),
               .issuer = issuer,
               .leeway = leeway,
               .maxAge = maxAge,
               .organization = organization};
  handler.defaults = {{"code_challenge", PKCE::challenge(handler.verifier)},
                      {"code_challenge_method", "S256"}};
  if (nonce) handler.defaults.emplace("nonce", *nonce);
  auto userAgent = makeUserAgent(authorizeURL(state, handler));
  return std::make_shared<LoginTransaction>(
      LoginTransaction::Fields{.userAgent = std::move(userAgent),
                               .redirectURL = *redirectURL_,
                               .state = state,
                               .handler = std::move(handler),
                               .logger = logger,
                               .callback = std::move(callback)});
}

std::string Auth0WebAuth::authorizeURL(std::string const& state, PKCE const& handler) const {
  Parameters map = handler.defaults;
  map["scope"] = "openid profile email";
  map["client_id"] = clientId;
  map["response_type"] = responseType;
  map["redirect_uri"] = *redirectURL_;
  map["state"] = state;
  setOrErase(map, "organization", organization);
  setOrErase(map, "invitation", invitation_);
  setOrErase(map, "max_age", maxAge ? std::optional(std::to_string(*maxAge)) : std::nullopt);
  for (auto const& [name, value] : parameters) map.insert_or_assign(name, value);
  map["scope"] = includingRequiredScope(map["scope"]);

  std::vector<URLQueryItem> items;
  for (auto const& [name, value] : map) items.push_back({name, value});
  if (auto const value = telemetry.value()) items.push_back({"auth0Client", *value});
  URLComponents components(overrideAuthorizeURL.value_or(url + "authorize"));
  components.setQueryItems(items);
  return components.text();
}

std::shared_ptr<ASUserAgent> Auth0WebAuth::makeUserAgent(std::string authorizeURL) const {
  auto completion = [storage = storage](std::optional<std::string> const& callbackURL,
                                        std::exception_ptr const& error) {
    endPage(*storage, callbackURL, error);
  };
  auto scheme = URLComponents(*redirectURL_).scheme();
  auto const page = provider ? provider(std::move(authorizeURL), std::move(scheme), completion)
                             : WebAuthenticationSession::make(std::move(authorizeURL),
                                                              std::move(scheme), completion);
  page->setPrefersEphemeralWebBrowserSession(ephemeralSession);
  return std::make_shared<ASUserAgent>(page,
                                       [closed = onCloseCallback](Result<void> const& result) {
                                         if (result && closed) closed();
                                       });
}

}  // namespace vek
