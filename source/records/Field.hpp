// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vek {

/// One key of a JSON object and the member of a record that holds its value. A record lists its
/// fields once, in a static function `fields()`; encoding and decoding follow from that list.
/// A member of type `std::optional` is an optional key: missing and null read as empty, and an
/// empty one is left out when written.
template <class Record, class Member>
struct Field {
  std::string_view key;
  Member Record::* member;
};

template <class Record, class Member>
Field(char const*, Member Record::*) -> Field<Record, Member>;

}  // namespace vek
