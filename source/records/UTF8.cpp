// SPDX-License-Identifier: MIT
#include "records/UTF8.hpp"

#include <cstddef>

namespace vek {
namespace {

/// How many bytes the character at the head of `text` has; 0 when it is no UTF-8.
std::size_t characterLength(std::string_view text) {
  auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  unsigned char const lead = byte(0);
  if (lead < 0x80) return 1;
  std::size_t const length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0U) != 0x80) return 0;
  }
  bool const isOverlong = (lead == 0xe0 && byte(1) < 0xa0) || (lead == 0xf0 && byte(1) < 0x90);
  bool const isNoCharacter = (lead == 0xed && byte(1) > 0x9f) || (lead == 0xf4 && byte(1) > 0x8f);
  return isOverlong || isNoCharacter ? 0 : length;
}

}  // namespace

bool isUTF8(std::string_view bytes) {
  while (!bytes.empty()) {
    std::size_t const length = characterLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace vek
