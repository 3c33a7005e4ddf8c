// SPDX-License-Identifier: MIT
#include "platform/WebAuthenticationSession.hpp"

#include <utility>

#include "platform/CallbackValues.hpp"
#include "platform/Timer.hpp"
#include "platform/URLComponents.hpp"

namespace vek {
namespace {

using Code = WebAuthenticationSessionError::Code;

struct Surroundings {
  std::mutex mutex;
  WebAuthenticationSession::Presenter presenter;
  std::weak_ptr<WebAuthenticationSession> waiting;
};

/// Never released: a redirect may come while the process ends.
Surroundings& surroundings() {
  static auto* const instance = new Surroundings;
  return *instance;
}

/// What a page, or the redirect that it ends with, says it belongs to.
std::optional<std::string> stateOf(std::string const& url) {
  auto const values = callbackValues(url).value_or(CallbackValues());
  auto const state = values.find("state");
  return state == values.end() ? std::nullopt : std::optional(state->second);
}

std::exception_ptr sessionError(Code code) {
  return std::make_exception_ptr(WebAuthenticationSessionError(code));
}

}  // namespace

char const* WebAuthenticationSessionError::what() const noexcept {
  return code_ == Code::canceledLogin ? "The login was cancelled."
                                      : "There is no way to show the login page.";
}

void WebAuthenticationSession::setPresenter(Presenter presenter) {
  std::lock_guard const lock(surroundings().mutex);
  surroundings().presenter = std::move(presenter);
}

bool WebAuthenticationSession::expects(std::string const& url) {
  auto const state = stateOf(url);
  std::lock_guard const lock(surroundings().mutex);
  auto const session = surroundings().waiting.lock();
  return session && state && stateOf(session->page_.url) == state;
}

bool WebAuthenticationSession::handleCallback(std::string const& url) {
  std::shared_ptr<WebAuthenticationSession> session;
  {
    std::lock_guard const lock(surroundings().mutex);
    session = surroundings().waiting.lock();
    URLComponents const components(url);
    if (!session || !components.url() || components.scheme() != session->page_.callbackScheme) {
      return false;
    }
    surroundings().waiting.reset();
  }
  session->end(url, nullptr);
  return true;
}

std::shared_ptr<WebAuthenticationSession> WebAuthenticationSession::make(
    std::string url, std::string callbackScheme, Completion completion,
    std::chrono::milliseconds limit) {
  std::shared_ptr<WebAuthenticationSession> session(new WebAuthenticationSession);
  session->page_ = {.url = std::move(url), .callbackScheme = std::move(callbackScheme)};
  session->completion_ = std::move(completion);
  session->limit_ = limit;
  return session;
}

WebAuthenticationSession::~WebAuthenticationSession() = default;

void WebAuthenticationSession::setPrefersEphemeralWebBrowserSession(bool prefers) {
  page_.prefersEphemeralWebBrowserSession = prefers;
}

void WebAuthenticationSession::start() {
  Presenter presenter;
  std::shared_ptr<WebAuthenticationSession> previous;
  {
    std::lock_guard const lock(surroundings().mutex);
    presenter = surroundings().presenter;
    previous = std::exchange(surroundings().waiting, weak_from_this()).lock();
  }
  if (previous) previous->cancel();
  if (!presenter) {
    end(std::nullopt, sessionError(Code::presentationContextNotProvided));
    return;
  }
  {
    std::lock_guard const lock(mutex_);
    timer_ = std::make_unique<Timer>(limit_, [weak = weak_from_this()] {
      if (auto const session = weak.lock()) session->cancel();
    });
  }
  try {
    presenter(page_);
  } catch (...) {
    end(std::nullopt, std::current_exception());
  }
}

void WebAuthenticationSession::cancel() {
  end(std::nullopt, sessionError(Code::canceledLogin));
}

void WebAuthenticationSession::end(std::optional<std::string> url, std::exception_ptr error) {
  {
    std::lock_guard const lock(surroundings().mutex);
    if (surroundings().waiting.lock().get() == this) surroundings().waiting.reset();
  }
  std::unique_lock lock(mutex_);
  auto const completion = std::exchange(completion_, nullptr);
  auto timer = std::move(timer_);
  lock.unlock();
  timer.reset();
  if (completion) completion(std::move(url), std::move(error));
}

}  // namespace vek
