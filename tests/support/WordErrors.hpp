// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vek::test {

/// A number below a million as it is spoken: 12000 is "twelve thousand".
inline std::string spokenNumber(unsigned long number) {
  static constexpr std::array small{"zero",    "one",     "two",       "three",    "four",
                                    "five",    "six",     "seven",     "eight",    "nine",
                                    "ten",     "eleven",  "twelve",    "thirteen", "fourteen",
                                    "fifteen", "sixteen", "seventeen", "eighteen", "nineteen"};
  static constexpr std::array tens{"",      "",      "twenty",  "thirty", "forty",
                                   "fifty", "sixty", "seventy", "eighty", "ninety"};
  auto const withRest = [](std::string text, unsigned long rest) {
    return rest == 0 ? text : text + ' ' + spokenNumber(rest);
  };
  if (number < small.size()) return small.at(number);
  if (number < 100) return withRest(tens.at(number / 10), number % 10);
  if (number < 1000) return withRest(spokenNumber(number / 100) + " hundred", number % 100);
  return withRest(spokenNumber(number / 1000) + " thousand", number % 1000);
}

/// The words of a text as they are spoken: without case and punctuation, figures as words, so
/// that "$12,000" and "twelve thousand dollars" are the same.
inline std::vector<std::string> spokenWords(std::string_view text) {
  std::vector<std::string> words;
  auto const append = [&words](std::string const& spoken) {
    for (std::size_t begin = 0; begin < spoken.size();) {
      std::size_t const end = std::min(spoken.find(' ', begin), spoken.size());
      if (end > begin) words.push_back(spoken.substr(begin, end - begin));
      begin = end + 1;
    }
  };
  auto const isKind = [&text](std::size_t at, auto kind) {
    return at < text.size() && kind(static_cast<unsigned char>(text[at])) != 0;
  };
  for (std::size_t at = 0; at < text.size();) {
    bool const isMoney = text[at] == '$' && isKind(at + 1, isdigit);
    if (isMoney) ++at;
    if (isKind(at, isdigit)) {
      unsigned long number = 0;
      for (;
           isKind(at, isdigit) || (at < text.size() && text[at] == ',' && isKind(at + 1, isdigit));
           ++at) {
        if (text[at] != ',') number = number * 10 + static_cast<unsigned long>(text[at] - '0');
      }
      append(spokenNumber(number));
      if (isMoney) append("dollars");
      if (at < text.size() && text[at] == '%') append("percent");
    } else if (isKind(at, isalpha)) {
      std::string word;
      for (;
           isKind(at, isalpha) || (at < text.size() && text[at] == '\'' && isKind(at + 1, isalpha));
           ++at) {
        word += static_cast<char>(std::tolower(static_cast<unsigned char>(text[at])));
      }
      append(word == "mr" ? "mister" : word);
    } else {
      ++at;
    }
  }
  return words;
}

/// How many words must be put in, left out or replaced to make `expected` of `actual`.
inline std::size_t wrongWords(std::string_view expected, std::string_view actual) {
  auto const wanted = spokenWords(expected);
  auto const given = spokenWords(actual);
  std::vector<std::size_t> costs(given.size() + 1);
  for (std::size_t column = 0; column < costs.size(); ++column) costs[column] = column;
  for (std::size_t row = 0; row < wanted.size(); ++row) {
    std::size_t diagonal = std::exchange(costs[0], row + 1);
    for (std::size_t column = 0; column < given.size(); ++column) {
      std::size_t const replaced = diagonal + (wanted[row] == given[column] ? 0 : 1);
      diagonal = costs[column + 1];
      costs[column + 1] = std::min({replaced, diagonal + 1, costs[column] + 1});
    }
  }
  return costs.back();
}

}  // namespace vek::test
