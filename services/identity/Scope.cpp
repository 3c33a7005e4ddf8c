// SPDX-License-Identifier: MIT
#include "services/identity/Scope.hpp"

#include <algorithm>
#include <vector>

namespace vek::services {

namespace {

std::vector<std::string_view> words(std::string_view scope) {
  std::vector<std::string_view> found;
  while (!scope.empty()) {
    auto const end = std::min(scope.find(' '), scope.size());
    if (end > 0) found.push_back(scope.substr(0, end));
    scope.remove_prefix(std::min(end + 1, scope.size()));
  }
  return found;
}

}  // namespace

bool hasWord(std::string_view scope, std::string_view word) {
  return std::ranges::count(words(scope), word) > 0;
}

bool hasWords(std::string_view scope, std::string_view part) {
  return std::ranges::all_of(words(part), [scope](auto word) { return hasWord(scope, word); });
}

std::string knownScope(std::string_view scope) {
  std::string known;
  for (std::string_view const word : {"openid", "profile", "email"}) {
    if (!hasWord(scope, word)) continue;
    if (!known.empty()) known += ' ';
    known += word;
  }
  return known;
}

}  // namespace vek::services
