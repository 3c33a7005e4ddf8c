// SPDX-License-Identifier: MIT
#include "services/identity/AuthorizeEndpoint.hpp"

#include <fmt/format.h>

#include "platform/Log.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

namespace {

constexpr int freeFailuresOfAccount = 5;
/// Several people may share an address.
constexpr int freeFailuresOfAddress = 20;
constexpr std::size_t longestEntry = 256;

Logger const logger("identity");

std::string item(Items const& items, std::string_view name) {
  for (auto const& [key, value] : items) {
    if (key == name) return value;
  }
  return {};
}

/// `answer`, unless the client's request is none that can be answered so.
template <class Answer>
Response answering(Request const& request, IdentityConfiguration const& configuration,
                   Answer answer) {
  try {
    return answer(AuthorizationRequest::read(request.query, configuration));
  } catch (UntrustedRequest const& error) {
    return problemPage(400, error.what());
  } catch (RefusedRequest const& refused) {
    return redirectPage(refused.location);
  }
}

std::string duration(std::chrono::seconds time) {
  return time == std::chrono::seconds(1) ? "1 second" : fmt::format("{} seconds", time.count());
}

}  // namespace

/// A name and a password that were tried.
struct AuthorizeEndpoint::Attempt {
  std::string name;
  std::string password;
  std::string address;
  AttemptLimiter::Time time = std::chrono::steady_clock::now();
};

AuthorizeEndpoint::AuthorizeEndpoint(IdentityConfiguration const& configuration,
                                     IdentityStore& store)
    : configuration_(configuration),
      store_(store),
      attemptsOfAccount_(freeFailuresOfAccount),
      attemptsOfAddress_(freeFailuresOfAddress) {}

Response AuthorizeEndpoint::show(Request const& request) const {
  return answering(request, configuration_,
                   [&](AuthorizationRequest const&) { return form(200, request); });
}

Response AuthorizeEndpoint::submit(Request const& request, Date now) {
  return answering(request, configuration_, [&](AuthorizationRequest const& authorization) {
    auto const entries = readItems(request.body).value_or(Items());
    if (!guard_.accepts(request, item(entries, "guard"))) {
      return form(403, request, {}, {"This form is out of date. Please sign in again."});
    }
    if (item(entries, "action") == "cancel") {
      return redirectPage(
          authorization.locationWithError("access_denied", "The sign-in was cancelled."));
    }
    Attempt const attempt{.name = item(entries, "name"),
                          .password = item(entries, "password"),
                          .address = request.peer};
    return signIn(request, authorization, attempt, now);
  });
}

Response AuthorizeEndpoint::signIn(Request const& request,
                                   AuthorizationRequest const& authorization,
                                   Attempt const& attempt, Date now) {
  using Fields = SignInForm::Fields;
  if (attempt.name.empty()) return form(400, request, {}, {"Enter your name.", Fields::name});
  if (attempt.password.empty()) {
    return form(400, request, attempt.name, {"Enter your password.", Fields::password});
  }
  // No account has such; neither is one worth a hash, or a place in the limiters.
  if (attempt.name.size() > longestEntry || attempt.password.size() > longestEntry) {
    return form(400, request, {}, {"Wrong name or password.", Fields::both});
  }
  if (auto const time = wait(attempt); time > std::chrono::seconds(0)) {
    auto response = form(429, request, attempt.name,
                         {fmt::format("Too many attempts. Try again in {}.", duration(time))});
    response.headers.emplace_back("Retry-After", std::to_string(time.count()));
    return response;
  }
  auto const account = accountKey(attempt);
  if (!account) {
    attemptsOfAccount_.failed(attempt.name, attempt.time);
    attemptsOfAddress_.failed(attempt.address, attempt.time);
    logger.notice("a sign-in failed");
    return form(400, request, attempt.name, {"Wrong name or password.", Fields::both});
  }
  attemptsOfAccount_.succeeded(attempt.name);
  auto const code = randomToken();
  store_.addCode(tokenHash(code), *account, authorization, now);
  logger.notice(fmt::format("account {} signed in", *account));
  return redirectPage(authorization.locationWithCode(code));
}

std::chrono::seconds AuthorizeEndpoint::wait(Attempt const& attempt) const {
  return std::max(attemptsOfAccount_.wait(attempt.name, attempt.time),
                  attemptsOfAddress_.wait(attempt.address, attempt.time));
}

std::optional<std::int64_t> AuthorizeEndpoint::accountKey(Attempt const& attempt) {
  auto const login = store_.login(attempt.name);
  bool const isRight = isPassword(attempt.password, login ? login->password : nobody_);
  return login && isRight ? std::optional(login->accountKey) : std::nullopt;
}

Response AuthorizeEndpoint::form(int status, Request const& request, std::string name,
                                 SignInForm::Problem problem) const {
  auto const ticket = guard_.ticketFor(request);
  auto response = signInPage(
      status, {.guard = ticket.formValue, .name = std::move(name), .problem = std::move(problem)});
  response.headers.emplace_back("Set-Cookie", ticket.cookieHeader);
  return response;
}

}  // namespace vek::services
