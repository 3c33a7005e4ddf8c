// SPDX-License-Identifier: MIT
#include "records/Coding.hpp"

#include <array>
#include <cmath>

#include <boost/json/kind.hpp>
#include <boost/json/parse.hpp>

#include "records/DateFormatter.hpp"
#include "records/DecodingError.hpp"
#include "records/JSON.hpp"

namespace vek::json {
namespace {

std::string_view kindName(boost::json::value const& value) {
  switch (value.kind()) {
    case boost::json::kind::null:
      return "null";
    case boost::json::kind::bool_:
      return "boolean";
    case boost::json::kind::string:
      return "text";
    case boost::json::kind::array:
      return "list";
    case boost::json::kind::object:
      return "object";
    default:
      return "number";
  }
}

std::string_view textOf(boost::json::value const& value, Path const& path) {
  auto const* text = value.if_string();
  if (!text) failType(path, "text", value);
  return *text;
}

}  // namespace

std::string Path::text() const {
  if (!parent) return "$";
  if (key.empty()) return parent->text() + "[" + std::to_string(index) + "]";
  return parent->text() + "." + std::string(key);
}

void fail(Path const& path, std::string_view reason) {
  throw DecodingError(path.text() + ": " + std::string(reason));
}

void failType(Path const& path, std::string_view expected, boost::json::value const& found) {
  fail(path, "expected " + std::string(expected) + ", got " + std::string(kindName(found)));
}

std::string Coding<std::string>::decode(boost::json::value const& value, Path const& path) {
  return std::string(textOf(value, path));
}
boost::json::value Coding<std::string>::encode(std::string const& value,
                                               boost::json::storage_ptr storage) {
  return boost::json::value(value, std::move(storage));
}

SharedText Coding<SharedText>::decode(boost::json::value const& value, Path const& path) {
  return std::string(textOf(value, path));
}
boost::json::value Coding<SharedText>::encode(SharedText const& value,
                                              boost::json::storage_ptr storage) {
  return boost::json::value(value.string(), std::move(storage));
}

bool Coding<bool>::decode(boost::json::value const& value, Path const& path) {
  auto const* boolean = value.if_bool();
  if (!boolean) failType(path, "boolean", value);
  return *boolean;
}
boost::json::value Coding<bool>::encode(bool const& value, boost::json::storage_ptr storage) {
  return boost::json::value(value, std::move(storage));
}

std::int64_t Coding<std::int64_t>::decode(boost::json::value const& value, Path const& path) {
  if (!value.is_number()) failType(path, "integer", value);
  boost::system::error_code error;
  auto const integer = value.to_number<std::int64_t>(error);
  if (error) fail(path, "expected integer, got another number");
  return integer;
}
boost::json::value Coding<std::int64_t>::encode(std::int64_t const& value,
                                                boost::json::storage_ptr storage) {
  return boost::json::value(value, std::move(storage));
}

double Coding<double>::decode(boost::json::value const& value, Path const& path) {
  if (!value.is_number()) failType(path, "number", value);
  auto const number = value.to_number<double>();
  if (!std::isfinite(number)) fail(path, "expected number, got one out of range");
  return number;
}
boost::json::value Coding<double>::encode(double const& value, boost::json::storage_ptr storage) {
  return boost::json::value(value, std::move(storage));
}

UUID Coding<UUID>::decode(boost::json::value const& value, Path const& path) {
  auto const id = UUID::parse(textOf(value, path));
  if (!id) fail(path, "expected an identifier, got another text");
  return *id;
}
boost::json::value Coding<UUID>::encode(UUID const& value, boost::json::storage_ptr storage) {
  return boost::json::value(value.lowerCaseText(), std::move(storage));
}

Date Coding<Date>::decode(boost::json::value const& value, Path const& path) {
  auto const date = DateFormatter::parse(textOf(value, path));
  if (!date) fail(path, "expected a date, got another text");
  return *date;
}
boost::json::value Coding<Date>::encode(Date const& value, boost::json::storage_ptr storage) {
  return boost::json::value(DateFormatter::format(value), std::move(storage));
}

namespace detail {

boost::json::value parse(std::string_view text, boost::json::storage_ptr storage) {
  boost::system::error_code error;
  boost::json::value value = boost::json::parse(text, error, std::move(storage));
  if (error) fail(Path(), "not JSON: " + error.message());
  return value;
}

}  // namespace detail

}  // namespace vek::json
