// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "support/IssuedTokens.hpp"
#include "support/LocalServices.hpp"
#include "support/WebClient.hpp"

namespace vek::test {

/// A browser and a program that sign in at the identity provider of the local services, by filling
/// in its form.
class IdentityClient {
 public:
  /// Names and values of a request. One without a value is left out.
  using Parameters = std::map<std::string, std::string>;

  explicit IdentityClient(LocalServices const& services)
      : services_(services), client_(services.authority()) {}

  /// The authorize URL of a login, with some parameters replaced.
  [[nodiscard]] std::string authorizeURL(Parameters const& replaced = {}) const;
  Answer get(std::string const& url) { return client_.request("GET", url); }

  /// Fills in the form that `page` shows, and sends it to where the page came from.
  Answer submit(std::string const& url, Answer const& page, Parameters fields);
  /// The answer to name and password on a fresh form.
  Answer submit(std::string const& name, std::string const& password);

  /// Signs the first account in on the page of a login, and gives where it sends the browser to.
  std::string redirectFrom(std::string const& url);

  /// Signs the services' first account in. Throws when that does not work.
  std::string code();
  Answer exchange(std::string const& code, Parameters const& replaced = {});
  Answer renew(std::string const& refreshToken);
  IssuedTokens signIn() { return exchange(code()).as<IssuedTokens>(); }

  /// Sends these parameters to the token endpoint as JSON.
  Answer token(Parameters const& parameters);

  static constexpr char client[] = "vek-desktop";
  static constexpr char redirectURL[] = "com.vek.app://localhost/macos/com.vek.app/callback";
  static constexpr char audience[] = "https://api.vek.test";

 private:
  LocalServices const& services_;
  WebClient client_;
};

/// The value of a query item of a URL; empty when there is none.
[[nodiscard]] std::string queryValue(std::string const& url, std::string const& name);

/// The body of an HTML form.
[[nodiscard]] std::string formBody(IdentityClient::Parameters const& fields);

}  // namespace vek::test
