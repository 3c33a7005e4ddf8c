// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include <boost/json/parse.hpp>
#include <boost/json/value_to.hpp>

#include "platform/URLComponents.hpp"
#include "platform/WebAuthenticationSession.hpp"
#include "support/HTTPSTestServer.hpp"
#include "support/TokenSigner.hpp"

namespace vek::test {

/// An identity provider with one user, who logs in as soon as the page is shown. Sets itself as the
/// presenter of login pages.
class ScriptedProvider {
 public:
  ScriptedProvider() {
    WebAuthenticationSession::setPresenter([this](auto const& page) { show(page); });
  }
  ScriptedProvider(ScriptedProvider const&) = delete;
  ScriptedProvider& operator=(ScriptedProvider const&) = delete;
  ~ScriptedProvider() { WebAuthenticationSession::setPresenter(nullptr); }

  TestAuthority authority;
  TokenSigner signer;
  /// What the redirect says, with {state} for the state of the login; nothing for a user who never
  /// comes back.
  std::optional<std::string> redirect = "?code=the-code&state={state}";
  /// What the code is exchanged for, instead of tokens.
  std::optional<ScriptedAnswer> exchange = {};
  std::string issuer = {};
  HTTPSTestServer server{authority, [this](auto const& request) { return answer(request); }};

  /// The pages shown so far, by the values of their URLs.
  std::vector<std::map<std::string, std::string>> pages = {};
  std::vector<WebAuthenticationSession::Page> shown = {};
  /// How many there are, for those who wait on another thread.
  std::atomic<std::size_t> pageCount = 0;

  [[nodiscard]] std::string url() const { return server.url() + "/"; }
  [[nodiscard]] std::string callback(std::string const& values) const {
    auto const state = pages.back().at("state");
    return pages.back().at("redirect_uri") +
           fmt::format(fmt::runtime(values), fmt::arg("state", state));
  }
  /// What the last code was exchanged with.
  [[nodiscard]] std::map<std::string, std::string> exchanged() const {
    std::map<std::string, std::string> values;
    for (auto const& request : server.received()) {
      if (request.line != "POST /oauth/token") continue;
      values = boost::json::value_to<decltype(values)>(boost::json::parse(request.body));
    }
    return values;
  }

 private:
  void show(WebAuthenticationSession::Page const& page) {
    shown.push_back(page);
    pages.emplace_back();
    auto const items = URLComponents(page.url).queryItems();
    for (auto const& [name, value] : items.value()) pages.back()[name] = value;
    ++pageCount;
    if (redirect) WebAuthenticationSession::handleCallback(callback(*redirect));
  }

  [[nodiscard]] ScriptedAnswer answer(ReceivedRequest const& request) const {
    if (request.line == "GET /.well-known/jwks.json") {
      return ScriptedAnswer::of(200, "{\"keys\":[" + signer.jwk("k") + "]}");
    }
    if (exchange) return *exchange;
    auto const now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    auto const token =
        signer.token(R"({"alg":"RS256","kid":"k"})",
                     fmt::format(R"({{"iss":"{}","sub":"u","aud":"client","exp":{},"iat":{}}})",
                                 issuer.empty() ? url() : issuer, now + 60, now));
    return ScriptedAnswer::of(
        200, fmt::format(R"({{"access_token":"secret-a","token_type":"Bearer","expires_in":3600,)"
                         R"("refresh_token":"secret-r","id_token":"{}","scope":"openid"}})",
                         token));
  }
};

}  // namespace vek::test
