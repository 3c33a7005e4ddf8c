// SPDX-License-Identifier: MIT
#include "platform/Locale.hpp"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace vek {
namespace {

icu::Locale parsed(std::string const& identifier) {
  return icu::Locale::createCanonical(identifier.c_str());
}

}  // namespace

Locale Locale::current() {
  std::string identifier = icu::Locale::getDefault().getName();
  for (char& character : identifier) {
    if (character == '_') character = '-';
  }
  return Locale(identifier);
}

std::optional<std::string> Locale::languageCode() const {
  std::string code = parsed(identifier_).getLanguage();
  if (code.empty()) return std::nullopt;
  return code;
}

std::optional<std::string> Locale::localizedLanguageName(std::string_view code) const {
  icu::UnicodeString name;
  icu::Locale(std::string(code).c_str()).getDisplayLanguage(parsed(identifier_), name);
  std::string text;
  name.toUTF8String(text);
  // The code itself comes back where there is no name.
  if (text.empty() || text == code) return std::nullopt;
  return text;
}

}  // namespace vek
