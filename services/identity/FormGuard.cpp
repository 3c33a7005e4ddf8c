// SPDX-License-Identifier: MIT
#include "services/identity/FormGuard.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "records/Base64URL.hpp"

namespace vek::services {

namespace {

constexpr std::string_view cookieName = "__Host-vek-form";

/// The cookie that the browser sent; empty when it sent none of ours.
std::string_view cookieOf(Request const& request) {
  auto rest = request.header("Cookie");
  while (!rest.empty()) {
    auto const end = rest.find(';');
    auto pair = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    pair.remove_prefix(std::min(pair.find_first_not_of(' '), pair.size()));
    auto const equals = pair.find('=');
    if (pair.substr(0, equals) != cookieName || equals == std::string_view::npos) continue;
    auto const value = pair.substr(equals + 1);
    return Base64URL::decode(value).value_or("").size() == 32 ? value : std::string_view{};
  }
  return {};
}

}  // namespace

std::string FormGuard::codeFor(std::string_view cookie) const {
  return Base64URL::encode(hmac(key_, cookie));
}

FormGuard::Ticket FormGuard::ticketFor(Request const& request) const {
  // A browser keeps its cookie, so that a second page does not spoil the form of the first.
  std::string cookie(cookieOf(request));
  if (cookie.empty()) cookie = randomToken();
  return {codeFor(cookie),
          fmt::format("{}={}; Path=/; Secure; HttpOnly; SameSite=Strict", cookieName, cookie)};
}

bool FormGuard::accepts(Request const& request, std::string_view formValue) const {
  auto const cookie = cookieOf(request);
  return !cookie.empty() && areEqual(codeFor(cookie), formValue);
}

}  // namespace vek::services
