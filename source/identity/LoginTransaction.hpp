// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "identity/ASUserAgent.hpp"
#include "identity/Credentials.hpp"
#include "identity/PKCE.hpp"
#include "identity/WebAuthError.hpp"
#include "platform/Log.hpp"
#include "runtime/Result.hpp"

namespace vek {

/// One login, from the page in the browser to the credentials. It lives in memory only, and ends
/// with exactly one call of its callback, on any thread.
class LoginTransaction {
 public:
  /// Gets the credentials or a WebAuthError.
  using Callback = std::function<void(Result<Credentials>)>;

  struct Fields {
    std::shared_ptr<ASUserAgent> userAgent;
    std::string redirectURL;
    /// What the redirect has to bring back.
    std::optional<std::string> state;
    PKCE handler;
    std::optional<Logger> logger = {};
    Callback callback;
  };

  explicit LoginTransaction(Fields fields) : fields_(std::move(fields)) {}

  /// Shows the login page.
  void start();
  /// Goes on with the redirect.
  void resume(std::string const& url);
  void fail(WebAuthError const& error);
  /// Gives the login page up.
  void cancel();

 private:
  /// The user agent, for the first that asks: who gets it ends the login page.
  std::shared_ptr<ASUserAgent> takeUserAgent();

  std::mutex mutex_;
  Fields fields_;
};

}  // namespace vek
