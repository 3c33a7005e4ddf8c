// SPDX-License-Identifier: MIT
#include "identity/LoginTransaction.hpp"

#include <utility>

#include <boost/json/value_from.hpp>

#include "runtime/TaskHandle.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {
namespace {

Task<> deliver(Task<Credentials> task, LoginTransaction::Callback callback) {
  callback(co_await attempt(std::move(task)));
}

WebAuthError refusal(CallbackValues const& values) {
  return WebAuthError(
      WebAuthError::Code::other,
      std::make_exception_ptr(AuthenticationError(boost::json::value_from(values).as_object())));
}

}  // namespace

void LoginTransaction::start() {
  std::unique_lock lock(mutex_);
  auto const userAgent = fields_.userAgent;
  lock.unlock();
  if (userAgent) userAgent->start();
}

void LoginTransaction::resume(std::string const& url) {
  auto const values = callbackValues(url);
  auto const isOurs = [&] {
    auto const state = values->find("state");
    return !fields_.state || (state != values->end() && state->second == *fields_.state);
  };
  if (!values || !isOurs()) {
    fail(WebAuthError::unknown("Invalid callback URL: " + url));
  } else if (values->contains("error")) {
    fail(refusal(*values));
  } else if (auto const userAgent = takeUserAgent()) {
    userAgent->finish(Result<void>());
    spawn(ThreadPool::shared(), deliver(fields_.handler.credentials(*values), fields_.callback));
  }
}

void LoginTransaction::fail(WebAuthError const& error) {
  auto const userAgent = takeUserAgent();
  if (!userAgent) return;
  auto const reason = std::make_exception_ptr(error);
  userAgent->finish(reason);
  fields_.callback(reason);
}

void LoginTransaction::cancel() {
  std::unique_lock lock(mutex_);
  auto const userAgent = fields_.userAgent;
  lock.unlock();
  if (userAgent) userAgent->cancel();
}

std::shared_ptr<ASUserAgent> LoginTransaction::takeUserAgent() {
  std::lock_guard const lock(mutex_);
  return std::exchange(fields_.userAgent, nullptr);
}

}  // namespace vek
