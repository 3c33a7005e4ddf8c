// SPDX-License-Identifier: MIT
#include "records/DuplicateMembers.hpp"

#include <boost/json/basic_parser_impl.hpp>

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

}  // namespace

bool hasDuplicateMembers(boost::json::object const& object, std::string_view text) {
  boost::json::basic_parser<MemberCount> parser{boost::json::parse_options()};
  error_code error;
  parser.write_some(false, text.data(), text.size(), error);
  return error || parser.handler().members != object.size();
}

}  // namespace vek
