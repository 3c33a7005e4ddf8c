// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vek::services {

// A scope is a list of words with blanks between them.

[[nodiscard]] bool hasWord(std::string_view scope, std::string_view word);

/// Whether all words of `part` are in `scope`.
[[nodiscard]] bool hasWords(std::string_view scope, std::string_view part);

/// The words of `scope` that mean something here: "openid", "profile" and "email".
[[nodiscard]] std::string knownScope(std::string_view scope);

}  // namespace vek::services
