// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/LocalServices.hpp"
#include "support/WebClient.hpp"

namespace vek::test {

/// Requests to the backend of the local services, with an access token.
class BackendClient {
 public:
  explicit BackendClient(LocalServices const& services)
      : BackendClient(services.url(), services.authority(), services.token()) {}
  BackendClient(std::string url, std::filesystem::path authority, std::string accessToken)
      : token(std::move(accessToken)), url_(std::move(url)), client_(std::move(authority)) {}

  /// `path` under "/api/v1/agents/", or from the root when it begins with a slash.
  Answer get(std::string const& path) { return request("GET", path, ""); }
  Answer post(std::string const& path, std::string const& body) {
    return request("POST", path, body);
  }
  Answer request(std::string const& method, std::string const& path, std::string const& body,
                 std::vector<std::string> headers = {});

  /// Connects and sends these bytes, and nothing more.
  void sendRaw(std::string const& bytes) { client_.sendRaw(url_, bytes); }

  /// Makes a transcript and returns its identifier.
  std::string create();
  Answer append(std::string const& transcript, std::string const& text);
  Answer content(std::string const& transcript);

  std::string token;

 private:
  std::string url_;
  WebClient client_;
};

}  // namespace vek::test
