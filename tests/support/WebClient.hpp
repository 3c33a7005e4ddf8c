// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "records/JSON.hpp"

namespace vek::test {

struct Answer {
  /// 0 when no answer came.
  long status = 0;
  std::string body = {};
  /// By their names in lower case.
  std::map<std::string, std::string> headers = {};
  /// Why no answer came.
  std::string failure = {};

  template <class Record>
  [[nodiscard]] Record as() const {
    return json::decode<Record>(body);
  }
  /// Empty when there is no such header.
  [[nodiscard]] std::string header(std::string const& name) const;
  /// The message of an ErrorDTO; throws when the body is no such record.
  [[nodiscard]] std::string message() const;
};

/// Plain HTTPS requests over one connection that is kept alive, and with the cookies that came.
/// Redirects are not followed.
class WebClient {
 public:
  /// `authority`: the PEM file of the one authority that is trusted.
  explicit WebClient(std::filesystem::path authority);
  WebClient(WebClient const&) = delete;
  WebClient& operator=(WebClient const&) = delete;
  ~WebClient();

  Answer request(std::string const& method, std::string const& url, std::string const& body = "",
                 std::vector<std::string> const& headers = {});

  /// Connects and sends these bytes, and nothing more.
  void sendRaw(std::string const& url, std::string const& bytes);

 private:
  std::filesystem::path authority_;
  void* handle_;
};

}  // namespace vek::test
