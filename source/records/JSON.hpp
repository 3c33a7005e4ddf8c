// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include <boost/json/monotonic_resource.hpp>
#include <boost/json/serialize.hpp>

#include "records/Coding.hpp"

namespace vek::json {

namespace detail {
boost::json::value parse(std::string_view text, boost::json::storage_ptr storage);
}  // namespace detail

/// Reads a record, or a list of records, or a plain value. Throws DecodingError.
template <class Value>
[[nodiscard]] Value decode(std::string_view text) {
  boost::json::monotonic_resource memory;
  boost::json::value const tree = detail::parse(text, &memory);
  return Coding<Value>::decode(tree, Path());
}

/// The JSON text of a value that `decode` can read.
template <class Value>
[[nodiscard]] std::string encode(Value const& value) {
  boost::json::monotonic_resource memory;
  return boost::json::serialize(Coding<Value>::encode(value, &memory));
}

}  // namespace vek::json
