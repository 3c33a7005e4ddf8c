// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <thread>

#include <boost/json/parse.hpp>

#include "support/HTTPSTestServer.hpp"

namespace vek::test {

/// An identity provider that gives a new refresh token with each renewal. The one before stays good
/// until the new one is used; a use after that ends the login for good.
class RotatingProvider {
 public:
  TestAuthority authority;
  HTTPSTestServer server{authority, [this](auto const& request) { return answer(request); }};

  /// What a renewal gives beside tokens.
  std::string answerFields = R"("expires_in":3600,"scope":"openid")";
  std::chrono::milliseconds delay{0};

  [[nodiscard]] std::string url() const { return server.url() + "/"; }
  /// The refresh token of the last renewal, or the one to begin with.
  [[nodiscard]] std::string refreshToken() const {
    std::lock_guard const lock(mutex_);
    return current_;
  }
  /// Whether the next use of this refresh token is a good one.
  [[nodiscard]] bool isGood(std::string const& refreshToken) const {
    std::lock_guard const lock(mutex_);
    return !isRevoked_ && (refreshToken == current_ || refreshToken == previous_);
  }
  [[nodiscard]] int renewals() const {
    std::lock_guard const lock(mutex_);
    return renewals_;
  }
  /// How many renewals there were at the same time, at most.
  [[nodiscard]] int mostAtOnce() const {
    std::lock_guard const lock(mutex_);
    return mostAtOnce_;
  }

 private:
  ScriptedAnswer answer(ReceivedRequest const& request) {
    auto const used = std::string(boost::json::parse(request.body).at("refresh_token").as_string());
    {
      std::lock_guard const lock(mutex_);
      mostAtOnce_ = std::max(mostAtOnce_, ++atOnce_);
    }
    std::this_thread::sleep_for(delay);
    std::lock_guard const lock(mutex_);
    --atOnce_;
    isRevoked_ |= used != current_ && used != previous_;
    if (isRevoked_) {
      return ScriptedAnswer::of(403, R"({"error":"invalid_grant","error_description":"Revoked."})");
    }
    if (used == current_) previous_ = used;
    current_ = fmt::format("refresh-{}", ++renewals_);
    return ScriptedAnswer::of(
        200, fmt::format(R"({{"access_token":"access-{}","token_type":"Bearer","id_token":"i",)"
                         R"("refresh_token":"{}",{}}})",
                         renewals_, current_, answerFields));
  }

  mutable std::mutex mutex_;
  std::string current_ = "refresh-0";
  std::string previous_;
  bool isRevoked_ = false;
  int renewals_ = 0;
  int atOnce_ = 0;
  int mostAtOnce_ = 0;
};

}  // namespace vek::test
