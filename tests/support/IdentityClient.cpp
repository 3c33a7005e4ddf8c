// SPDX-License-Identifier: MIT
#include "support/IdentityClient.hpp"

#include <stdexcept>

#include "platform/URLComponents.hpp"

namespace vek::test {

namespace {

// A pair of the standard's own example.
constexpr char verifier[] = "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk";
constexpr char challenge[] = "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM";

IdentityClient::Parameters merged(IdentityClient::Parameters parameters,
                                  IdentityClient::Parameters const& replaced) {
  for (auto const& [name, value] : replaced) parameters[name] = value;
  std::erase_if(parameters, [](auto const& parameter) { return parameter.second.empty(); });
  return parameters;
}

std::string guardOf(Answer const& page) {
  constexpr std::string_view before = R"(name="guard" value=")";
  auto const begin = page.body.find(before);
  if (begin == std::string::npos) return {};
  auto const rest = page.body.substr(begin + before.size());
  return rest.substr(0, rest.find('"'));
}

}  // namespace

std::string queryValue(std::string const& url, std::string const& name) {
  for (char const separator : {'?', '&'}) {
    auto const begin = url.find(separator + name + '=');
    if (begin == std::string::npos) continue;
    auto const value = url.substr(begin + name.size() + 2);
    return value.substr(0, value.find('&'));
  }
  return {};
}

std::string formBody(IdentityClient::Parameters const& fields) {
  std::string body;
  for (auto const& [name, value] : fields) {
    body += (body.empty() ? "" : "&") + name + '=' + percentEncoded(value);
  }
  return body;
}

std::string IdentityClient::authorizeURL(Parameters const& replaced) const {
  return services_.url() + "/authorize?" +
         formBody(merged({{"response_type", "code"},
                          {"client_id", client},
                          {"redirect_uri", redirectURL},
                          {"scope", "openid profile email"},
                          {"state", "the state"},
                          {"audience", audience},
                          {"code_challenge", challenge},
                          {"code_challenge_method", "S256"}},
                         replaced));
}

Answer IdentityClient::submit(std::string const& url, Answer const& page, Parameters fields) {
  fields.try_emplace("guard", guardOf(page));
  return client_.request("POST", url, formBody(fields));
}

Answer IdentityClient::submit(std::string const& name, std::string const& password) {
  auto const url = authorizeURL();
  return submit(url, get(url), {{"name", name}, {"password", password}, {"action", "sign-in"}});
}

std::string IdentityClient::redirectFrom(std::string const& url) {
  auto const [name, password] = services_.account();
  auto const answer =
      submit(url, get(url), {{"name", name}, {"password", password}, {"action", "sign-in"}});
  if (answer.status != 303) throw std::runtime_error("no redirect: " + answer.body);
  return answer.header("location");
}

std::string IdentityClient::code() {
  auto code = queryValue(redirectFrom(authorizeURL()), "code");
  if (code.empty()) throw std::runtime_error("no code");
  return code;
}

Answer IdentityClient::exchange(std::string const& code, Parameters const& replaced) {
  return token(merged({{"grant_type", "authorization_code"},
                       {"client_id", client},
                       {"code", code},
                       {"code_verifier", verifier},
                       {"redirect_uri", redirectURL}},
                      replaced));
}

Answer IdentityClient::renew(std::string const& refreshToken) {
  return token(
      {{"grant_type", "refresh_token"}, {"client_id", client}, {"refresh_token", refreshToken}});
}

Answer IdentityClient::token(Parameters const& parameters) {
  return client_.request("POST", services_.url() + "/oauth/token", json::encode(parameters),
                         {"Content-Type: application/json"});
}

}  // namespace vek::test
