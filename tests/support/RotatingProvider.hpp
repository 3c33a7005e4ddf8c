// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include <boost/json/parse.hpp>

#include "support/HTTPSTestServer.hpp"

namespace vek::test {

/// An identity provider that gives a new refresh token with each renewal, the first for
/// "refresh-0". The one before stays good until the new one is used; a use after that ends the
/// login for good.
class RotatingProvider {
 public:
  TestAuthority authority;
  HTTPSTestServer server{authority, [this](auto const& request) { return answer(request); }};

  /// What a renewal gives beside tokens.
  std::string answerFields = R"("expires_in":3600,"scope":"openid")";
  std::atomic<std::chrono::milliseconds> delay{std::chrono::milliseconds(0)};

  /// Has this happen while each further renewal is under way.
  void setMeanwhile(std::function<void()> event) {
    std::lock_guard const lock(mutex_);
    meanwhile_ = std::move(event);
  }

  [[nodiscard]] std::string url() const { return server.url() + "/"; }
  /// Whether the next use of this refresh token is a good one.
  [[nodiscard]] bool isGood(std::string const& refreshToken) const {
    std::lock_guard const lock(mutex_);
    return !isRevoked_ && predecessors_.contains(refreshToken) && !spent_.contains(refreshToken);
  }
  [[nodiscard]] int renewals() const {
    std::lock_guard const lock(mutex_);
    return renewals_;
  }

 private:
  ScriptedAnswer answer(ReceivedRequest const& request) {
    auto const used = std::string(boost::json::parse(request.body).at("refresh_token").as_string());
    std::this_thread::sleep_for(delay.load());
    std::lock_guard const lock(mutex_);
    meanwhile_();
    isRevoked_ |= !predecessors_.contains(used) || spent_.contains(used);
    if (isRevoked_) {
      return ScriptedAnswer::of(403, R"({"error":"invalid_grant","error_description":"Revoked."})");
    }
    spent_.insert(predecessors_.at(used));
    auto const next = fmt::format("refresh-{}", ++renewals_);
    predecessors_[next] = used;
    return ScriptedAnswer::of(
        200, fmt::format(R"({{"access_token":"access-{}","token_type":"Bearer","id_token":"i",)"
                         R"("refresh_token":"{}",{}}})",
                         renewals_, next, answerFields));
  }

  mutable std::mutex mutex_;
  std::function<void()> meanwhile_ = [] {};
  std::map<std::string, std::string> predecessors_ = {{"refresh-0", ""}};
  std::set<std::string> spent_;
  bool isRevoked_ = false;
  int renewals_ = 0;
};

}  // namespace vek::test
