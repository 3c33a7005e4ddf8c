// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/WebAuthenticationSession.hpp"
#include "runtime/Result.hpp"

namespace vek {

/// Where the user logs in: the browser, by a session of the platform's.
class ASUserAgent {
 public:
  /// Gets how the login page ended: well, or with a WebAuthError.
  using Callback = std::function<void(Result<void>)>;

  ASUserAgent(std::shared_ptr<WebAuthenticationSession> session, Callback callback)
      : session_(std::move(session)), callback_(std::move(callback)) {}

  void start() const { session_->start(); }
  void cancel() const { session_->cancel(); }
  void finish(Result<void> const& result) const {
    if (callback_) callback_(result);
  }

 private:
  std::shared_ptr<WebAuthenticationSession> session_;
  Callback callback_;
};

}  // namespace vek
