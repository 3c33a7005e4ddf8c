// SPDX-License-Identifier: MIT
#include "identity/JWT.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>
#include <boost/json/parse.hpp>

#include "records/Base64URL.hpp"
#include "records/DuplicateMembers.hpp"

namespace vek {
namespace {

using boost::system::error_code;

boost::json::object decodedObject(std::string_view part) {
  auto const bytes = Base64URL::decode(part);
  if (!bytes) throw JWTDecodingError(fmt::format("Failed to decode Base64URL value {}", part));
  error_code error;
  auto value = boost::json::parse(*bytes, error);
  if (error || !value.is_object() || hasDuplicateMembers(value.as_object(), *bytes)) {
    throw JWTDecodingError(fmt::format("Failed to parse JSON from Base64URL value {}", part));
  }
  return std::move(value.as_object());
}

std::optional<std::string> textIn(boost::json::object const& object, std::string_view key) {
  auto const* value = object.if_contains(key);
  auto const* text = value ? value->if_string() : nullptr;
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

}  // namespace

JWT::JWT(std::string string) : string_(std::move(string)) {
  auto const count = std::ranges::count(string_, '.') + 1;
  if (count != 3) {
    throw JWTDecodingError(
        fmt::format("The JWT {} has {} parts when it should have 3 parts.", string_, count));
  }
  auto const header = signedPart().substr(0, signedPart().find('.'));
  header_ = decodedObject(header);
  body_ = decodedObject(signedPart().substr(header.size() + 1));
}

std::string_view JWT::signedPart() const {
  return std::string_view(string_).substr(0, string_.rfind('.'));
}

std::optional<std::string> JWT::signature() const {
  auto part = string_.substr(signedPart().size() + 1);
  return part.empty() ? std::nullopt : std::optional(std::move(part));
}

std::optional<std::vector<std::string>> JWT::aud() const {
  if (auto single = text("aud")) return std::vector{std::move(*single)};
  auto const* value = body_.if_contains("aud");
  auto const* array = value ? value->if_array() : nullptr;
  if (!array) return std::nullopt;
  std::vector<std::string> audiences;
  for (auto const& element : *array) {
    if (!element.is_string()) return std::nullopt;
    audiences.emplace_back(element.as_string());
  }
  return audiences;
}

std::optional<std::string> JWT::text(std::string_view claim) const {
  return textIn(body_, claim);
}

std::optional<JWT::Time> JWT::time(std::string_view claim) const {
  constexpr double endOfYear9999 = 253'402'300'800;
  auto const* value = body_.if_contains(claim);
  if (!value || !value->is_number()) return std::nullopt;
  auto const seconds = value->to_number<double>();
  if (!(std::abs(seconds) < endOfYear9999)) return std::nullopt;
  return Time(Time::duration(seconds));
}

std::optional<std::string> JWT::headerText(std::string_view field) const {
  return textIn(header_, field);
}

}  // namespace vek
