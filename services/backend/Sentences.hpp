// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vek::services {

/// One word of a sentence.
struct Word {
  /// As it stands in the text, without the punctuation around it; signs of currency and of percent
  /// belong to it.
  std::string_view text;
  /// In lower case, with straight apostrophes.
  std::string lower;
  /// A comma or the like follows.
  bool endsClause = false;
};

/// The sentences of spoken text, each trimmed. They are views into `text`.
[[nodiscard]] std::vector<std::string_view> sentences(std::string_view text);

[[nodiscard]] std::vector<Word> words(std::string_view sentence);

}  // namespace vek::services
