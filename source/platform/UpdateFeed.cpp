// SPDX-License-Identifier: MIT
#include "platform/UpdateFeed.hpp"

#include <fmt/format.h>

#include <boost/json.hpp>
#include <system_error>

#include "platform/Files.hpp"
#include "platform/HTTPError.hpp"
#include "platform/URLComponents.hpp"
#include "platform/UpdateError.hpp"
#include "runtime/WhenAll.hpp"

namespace vek {
namespace {

using Code = UpdateError::Code;

constexpr std::size_t largestList = std::size_t{256} << 10U;
constexpr std::size_t largestSignature = 256;
constexpr std::size_t longestName = 64;
constexpr std::size_t longestLink = 2048;
constexpr std::chrono::seconds patience(30);

constexpr std::string_view product = "com.vek.app";

bool isSecure(std::string const& url) {
  URLComponents const components(url);
  return components.scheme() == "https" && components.url() && components.userInfo().empty();
}

Ed25519PublicKey readKey(std::filesystem::path const& file) {
  try {
    auto const text = readFile(file);
    auto key = text ? Ed25519PublicKey::fromPEM(*text) : std::nullopt;
    if (key) return std::move(*key);
  } catch (std::system_error const& error) {
    throw UpdateError(Code::noKey, error.code().message());
  }
  throw UpdateError(Code::noKey);
}

UpdateError malformed(std::string const& detail) {
  return UpdateError(Code::malformed, detail);
}

boost::json::object parseObject(std::string_view list) {
  boost::system::error_code error;
  auto value = boost::json::parse(list, error);
  if (error) throw malformed("it is not JSON: " + error.message());
  if (!value.is_object()) throw malformed("it holds no JSON object");
  return std::move(value.as_object());
}

std::string text(boost::json::object const& object, std::string_view key, std::size_t longest) {
  auto const* value = object.if_contains(key);
  if (!value || !value->is_string()) throw malformed(fmt::format("{} is not a text", key));
  auto const& text = value->get_string();
  if (text.size() > longest) throw malformed(fmt::format("{} is too long", key));
  return std::string(text);
}

std::string optionalText(boost::json::object const& object, std::string_view key,
                         std::string instead, std::size_t longest) {
  return object.contains(key) ? text(object, key, longest) : std::move(instead);
}

std::int64_t wholeNumber(boost::json::object const& object, std::string_view key) {
  auto const* value = object.if_contains(key);
  auto const* number = value ? value->if_int64() : nullptr;
  if (!number || *number < 0) throw malformed(fmt::format("{} is not a whole number", key));
  return *number;
}

std::chrono::sys_seconds now() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

}  // namespace

UpdateFeed::Release UpdateFeed::parse(std::string_view list) {
  auto const object = parseObject(list);
  if (text(object, "product", longestName) != product) {
    throw malformed("it is that of another product");
  }
  auto version = Version::parse(text(object, "version", longestName));
  if (!version) throw malformed("version is no version");
  auto name = optionalText(object, "displayVersion", version->text(), longestName);
  auto link = text(object, "link", longestLink);
  if (!isSecure(link)) throw malformed("link is no https address");
  return {
      .item = {.version = std::move(*version),
               .displayVersionString = std::move(name),
               .notes = optionalText(object, "notes", "", largestList),
               .link = std::move(link)},
      .serial = static_cast<std::uint64_t>(wholeNumber(object, "serial")),
      .expires = std::chrono::sys_seconds(std::chrono::seconds(wholeNumber(object, "expires")))};
}

Task<UpdateFeed::Release> UpdateFeed::latest() const {
  if (url_.empty()) throw UpdateError(Code::noFeed);
  if (!isSecure(url_)) throw UpdateError(Code::insecureFeed);
  auto const key = readKey(publicKey_);
  auto list = co_await fetchSigned(key);
  // One that is being replaced has the signature of the other for a moment.
  if (!list) list = co_await fetchSigned(key);
  if (!list) throw UpdateError(Code::badSignature);
  auto release = parse(*list);
  if (release.expires <= now()) throw UpdateError(Code::outdated);
  release.publisher = key.fingerprint();
  co_return release;
}

Task<std::optional<std::string>> UpdateFeed::fetchSigned(Ed25519PublicKey key) const {
  auto [list, signature] =
      co_await whenAll(fetch(url_, largestList), fetch(url_ + ".signature", largestSignature));
  if (!key.verifySignature(list, signature)) co_return std::nullopt;
  co_return std::move(list);
}

Task<std::string> UpdateFeed::fetch(std::string url, std::size_t largestBody) const {
  auto answer = co_await attempt(
      http_.send({.url = std::move(url), .timeout = patience, .largestBody = largestBody}));
  try {
    auto response = std::move(answer).value();
    if (response.status == 200) co_return std::move(response.body);
    throw UpdateError(Code::refused, fmt::format("status {}", response.status));
  } catch (HTTPError const& error) {
    throw UpdateError(Code::unreachable, error.what());
  }
}

}  // namespace vek
