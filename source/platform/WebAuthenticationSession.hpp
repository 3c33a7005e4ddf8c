// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace vek {

class Timer;

/// Why a login page gave no redirect.
class WebAuthenticationSessionError final : public std::exception {
 public:
  enum class Code { canceledLogin, presentationContextNotProvided };

  explicit WebAuthenticationSessionError(Code code) : code_(code) {}

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] char const* what() const noexcept override;

 private:
  Code code_;
};

/// One login page in the user's browser, from the moment it is shown to the redirect that it ends
/// with. How pages are shown, and how redirects reach this process, is settled once for the
/// process: whoever owns the screen sets the presenter, whoever hears of a redirect hands it over
/// here.
class WebAuthenticationSession : public std::enable_shared_from_this<WebAuthenticationSession> {
 public:
  struct Page {
    std::string url;
    /// The scheme of the redirect that is waited for.
    std::string callbackScheme;
    /// The page should see no cookies of the user's browser.
    bool prefersEphemeralWebBrowserSession = false;
  };

  /// Whether a redirect by https reaches the program, rather than only one of a scheme of its own.
  static constexpr bool receivesHTTPS = false;

  /// Shows a page, or has it shown, and returns soon. Throws when that cannot be. It may hand over
  /// the redirect before it returns.
  using Presenter = std::function<void(Page const&)>;
  static void setPresenter(Presenter presenter);

  /// Whether a session waits for the redirect that carries this one's state.
  [[nodiscard]] static bool expects(std::string const& url);

  /// Ends the session that waits for this redirect. False, and nothing changes, when none does: the
  /// scheme is another, the redirect came before, the login was given up, or this is no URL.
  static bool handleCallback(std::string const& url);

  /// Called once, on any thread, with the redirect or why there is none. Not called for a session
  /// that its owner lets go of.
  using Completion = std::function<void(std::optional<std::string> url, std::exception_ptr error)>;

  /// A session that gets no redirect within `limit` ends as cancelled.
  static std::shared_ptr<WebAuthenticationSession> make(
      std::string url, std::string callbackScheme, Completion completion,
      std::chrono::milliseconds limit = std::chrono::minutes(10));
  WebAuthenticationSession(WebAuthenticationSession const&) = delete;
  WebAuthenticationSession& operator=(WebAuthenticationSession const&) = delete;
  ~WebAuthenticationSession();

  void setPrefersEphemeralWebBrowserSession(bool prefers);
  /// Shows the page. The session that was waiting until now ends as cancelled.
  void start();
  void cancel();

 private:
  WebAuthenticationSession() = default;

  void end(std::optional<std::string> url, std::exception_ptr error);

  Page page_;
  std::chrono::milliseconds limit_{};
  std::mutex mutex_;
  Completion completion_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace vek
