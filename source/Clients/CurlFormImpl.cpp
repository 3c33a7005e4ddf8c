// SPDX-License-Identifier: MIT
#include "Clients/CurlFormImpl.hpp"

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

bool isUTF8(std::string_view text) {
  while (!text.empty()) {
    std::size_t const length = characterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string curlForm(HTTPRequest const& request) {
  constexpr char const* separator = " \\\n\t";
  std::string form = "curl \"" + request.url + "\"";
  if (request.method == "HEAD") {
    form += " --head";
  } else if (request.method != "GET") {
    form.append(separator).append("-X ").append(request.method);
  }
  for (auto const& [name, value] : request.headers) {
    if (name == "Cookie") continue;
    form.append(separator).append("-H '").append(name).append(": ").append(value).append("'");
  }
  if (request.body && isUTF8(*request.body)) {
    form.append(separator).append("-d '").append(*request.body).append("'");
  }
  return form;
}

}  // namespace vek
