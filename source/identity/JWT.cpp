// SPDX-License-Identifier: MIT
#include "identity/JWT.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>
#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/parse.hpp>

#include "records/Base64URL.hpp"

namespace vek {
namespace {

using boost::json::string_view;
using boost::system::error_code;

/// Counts the members of the outermost object as they stand in a text: a tree keeps the last of
/// those that have one name.
struct MemberCount {
  static constexpr std::size_t max_object_size = std::size_t(-1);
  static constexpr std::size_t max_array_size = std::size_t(-1);
  static constexpr std::size_t max_key_size = std::size_t(-1);
  static constexpr std::size_t max_string_size = std::size_t(-1);

  std::size_t depth = 0;
  std::size_t members = 0;

  bool on_object_begin(error_code&) { return ++depth > 0; }
  bool on_object_end(std::size_t size, error_code&) {
    if (--depth == 0) members = size;
    return true;
  }
  bool on_document_begin(error_code&) { return true; }
  bool on_document_end(error_code&) { return true; }
  bool on_array_begin(error_code&) { return true; }
  bool on_array_end(std::size_t, error_code&) { return true; }
  bool on_key_part(string_view, std::size_t, error_code&) { return true; }
  bool on_key(string_view, std::size_t, error_code&) { return true; }
  bool on_string_part(string_view, std::size_t, error_code&) { return true; }
  bool on_string(string_view, std::size_t, error_code&) { return true; }
  bool on_number_part(string_view, error_code&) { return true; }
  bool on_int64(std::int64_t, string_view, error_code&) { return true; }
  bool on_uint64(std::uint64_t, string_view, error_code&) { return true; }
  bool on_double(double, string_view, error_code&) { return true; }
  bool on_bool(bool, error_code&) { return true; }
  bool on_null(error_code&) { return true; }
  bool on_comment_part(string_view, error_code&) { return true; }
  bool on_comment(string_view, error_code&) { return true; }
};

/// Two members of one name could mean one thing here and another to who signed them.
bool hasDuplicates(boost::json::object const& object, std::string_view text) {
  boost::json::basic_parser<MemberCount> parser{boost::json::parse_options()};
  error_code error;
  parser.write_some(false, text.data(), text.size(), error);
  return error || parser.handler().members != object.size();
}

boost::json::object decodedObject(std::string_view part) {
  auto const bytes = Base64URL::decode(part);
  if (!bytes) throw JWTDecodingError(fmt::format("Failed to decode Base64URL value {}", part));
  error_code error;
  auto value = boost::json::parse(*bytes, error);
  if (error || !value.is_object() || hasDuplicates(value.as_object(), *bytes)) {
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
