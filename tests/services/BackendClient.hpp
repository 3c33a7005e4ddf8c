// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "records/JSON.hpp"
#include "support/LocalServices.hpp"

namespace vek::test {

struct Answer {
  /// 0 when no answer came.
  long status = 0;
  std::string body;
  /// Why no answer came.
  std::string failure;

  template <class Record>
  [[nodiscard]] Record as() const {
    return json::decode<Record>(body);
  }
  /// The message of an ErrorDTO; throws when the body is no such record.
  [[nodiscard]] std::string message() const;
};

/// Plain HTTPS requests to the local services over one connection that is kept alive.
class BackendClient {
 public:
  explicit BackendClient(LocalServices const& services)
      : BackendClient(services.url(), services.authority(), services.token()) {}
  BackendClient(std::string url, std::filesystem::path authority, std::string token);
  BackendClient(BackendClient const&) = delete;
  BackendClient& operator=(BackendClient const&) = delete;
  ~BackendClient();

  /// `path` under "/api/v1/agents/", or from the root when it begins with a slash.
  Answer get(std::string const& path) { return request("GET", path, ""); }
  Answer post(std::string const& path, std::string const& body) {
    return request("POST", path, body);
  }
  Answer request(std::string const& method, std::string const& path, std::string const& body,
                 std::vector<std::string> const& headers = {});

  /// Connects and sends these bytes, and nothing more.
  void sendRaw(std::string const& bytes);

  /// Makes a transcript and returns its identifier.
  std::string create();
  Answer append(std::string const& transcript, std::string const& text);
  Answer content(std::string const& transcript);

  std::string token;

 private:
  std::string url_;
  std::filesystem::path authority_;
  void* handle_;
};

}  // namespace vek::test
