// SPDX-License-Identifier: MIT
#include "services/backend/Figures.hpp"

#include <unordered_map>
#include <utility>

namespace vek::services {

namespace {

using Words = std::vector<Word>;

/// What a word can be in a figure, as bits.
enum Role : unsigned {
  numberWord = 1U << 0U,
  scale = 1U << 1U,
  currency = 1U << 2U,
  percent = 1U << 3U,
  unit = 1U << 4U,
  month = 1U << 5U,
  weekday = 1U << 6U,
  dayPart = 1U << 7U,
  nearness = 1U << 8U,
  period = 1U << 9U,
  halfOfDay = 1U << 10U,
  ordinal = 1U << 11U,
};

struct Vocabulary {
  Role role;
  std::vector<std::string_view> words;
};

std::vector<Vocabulary> const vocabularies = {
    {numberWord,
     {"zero",     "one",      "two",     "three",     "four",     "five",     "six",
      "seven",    "eight",    "nine",    "ten",       "eleven",   "twelve",   "thirteen",
      "fourteen", "fifteen",  "sixteen", "seventeen", "eighteen", "nineteen", "twenty",
      "thirty",   "forty",    "fifty",   "sixty",     "seventy",  "eighty",   "ninety",
      "hundred",  "thousand", "million", "billion",   "dozen"}},
    {scale, {"hundred", "thousand", "million", "billion", "k", "m"}},
    {currency, {"dollar", "dollars", "euro", "euros", "pound", "pounds", "cents", "usd", "eur"}},
    {percent, {"percent", "per-cent", "%"}},
    {unit, {"day",       "days",      "week",       "weeks",   "month",    "months",   "quarter",
            "quarters",  "year",      "years",      "hour",    "hours",    "minute",   "minutes",
            "people",    "seats",     "users",      "units",   "licenses", "licences", "customers",
            "employees", "engineers", "stores",     "offices", "devices",  "machines", "tons",
            "meters",    "miles",     "kilometers", "points"}},
    {month,
     {"january", "february", "march", "april", "may", "june", "july", "august", "september",
      "october", "november", "december"}},
    {weekday, {"monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday"}},
    {dayPart, {"morning", "afternoon", "evening", "noon", "night"}},
    {nearness, {"next", "last", "this"}},
    {period, {"week", "month", "quarter", "year"}},
    {halfOfDay, {"am", "pm", "a.m", "p.m", "o'clock"}},
    {ordinal, {"first", "second", "third", "fourth"}},
};

std::unordered_map<std::string_view, unsigned> const knownRoles = [] {
  std::unordered_map<std::string_view, unsigned> result;
  for (auto const& [role, words] : vocabularies) {
    for (auto const word : words) result[word] |= role;
  }
  return result;
}();

/// All that a word in lower case can be. "forty-two" is a number word too.
unsigned roles(std::string_view word) {
  if (auto const known = knownRoles.find(word); known != knownRoles.end()) return known->second;
  auto const hyphen = word.find('-');
  if (hyphen == std::string_view::npos) return 0;
  return roles(word.substr(0, hyphen)) & roles(word.substr(hyphen + 1)) & numberWord;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isNumeral(std::string_view word) {
  return !word.empty() && isDigit(word.front()) &&
         word.find_first_not_of("0123456789.,") == std::string_view::npos;
}

bool isOrdinalNumeral(std::string_view word) {
  if (word.size() < 3 || !isDigit(word.front())) return false;
  auto const ending = word.substr(word.size() - 2);
  return (ending == "st" || ending == "nd" || ending == "rd" || ending == "th") &&
         isNumeral(word.substr(0, word.size() - 2));
}

bool isYear(std::string_view word) {
  return word.size() == 4 && isNumeral(word) && (word.starts_with("19") || word.starts_with("20"));
}

/// Without its sign of currency or percent: "$1,200" is a numeral, and so is "15%".
struct Signs {
  std::string_view numeral;
  bool hasCurrency = false;
  bool hasPercent = false;
};

Signs signs(std::string_view word) {
  Signs result{word};
  for (std::string_view const sign : {"$", "\xE2\x82\xAC", "\xC2\xA3"}) {
    if (result.numeral.starts_with(sign)) {
      result.numeral.remove_prefix(sign.size());
      result.hasCurrency = true;
    }
  }
  if (result.numeral.ends_with('%')) {
    result.numeral.remove_suffix(1);
    result.hasPercent = true;
  }
  return result;
}

/// Reads the words of one sentence from left to right.
class Reader {
 public:
  explicit Reader(Words const& words) : words_(words) {
    roles_.reserve(words.size());
    for (auto const& word : words) roles_.push_back(roles(word.lower));
  }

  std::vector<Figure> read() {
    std::vector<Figure> result;
    for (std::size_t i = 0; i < words_.size();) {
      auto const end = figureAt(i);
      if (end > i) {
        result.push_back({kind_, span(i, end)});
        i = end;
      } else {
        ++i;
      }
    }
    return result;
  }

 private:
  /// The end of the figure that begins at `i`, with its kind in `kind_`; `i` if there is none.
  std::size_t figureAt(std::size_t i) {
    for (auto const reader : {&Reader::date, &Reader::time, &Reader::number}) {
      if (auto const end = (this->*reader)(i); end > i) return end;
    }
    return i;
  }

  /// "next Friday afternoon", "March 3rd 2025", "the third quarter", "tomorrow", "2025-03-01".
  std::size_t date(std::size_t i) {
    kind_ = Figure::Kind::date;
    auto at = i;
    if (is(at, nearness) && continues(at)) {
      ++at;
      if (is(at, period)) return at + 1;
      if (!is(at, weekday) && !isMonth(at)) return i;
    }
    if (is(at, weekday)) {
      ++at;
      return is(at, dayPart) && continues(at - 1) ? at + 1 : at;
    }
    if (isMonth(at)) return afterMonth(at + 1);
    bool const isDayOfMonth = (isOrdinalNumeral(lower(at)) || isNumeral(lower(at))) &&
                              lower(at).size() <= 4 && isMonth(at + 1);
    if (isDayOfMonth) return afterMonth(at + 2);
    if (is(at, ordinal) && lower(at + 1) == "quarter") return at + 2;
    if (lower(at) == "tomorrow") return is(at + 1, dayPart) ? at + 2 : at + 1;
    bool const isWritten = lower(at).size() == 10 && isYear(lower(at).substr(0, 4)) &&
                           lower(at)[4] == '-' && lower(at)[7] == '-';
    if (isWritten || isYear(lower(at))) return at + 1;
    return i;
  }

  std::size_t afterMonth(std::size_t at) {
    if (!continues(at - 1)) return at;
    bool const hasDay = isOrdinalNumeral(lower(at)) ||
                        (isNumeral(lower(at)) && lower(at).size() <= 2) || is(at, ordinal);
    if (hasDay) ++at;
    return isYear(lower(at)) ? at + 1 : at;
  }

  /// "10:30", "3 pm", "nine o'clock".
  std::size_t time(std::size_t i) {
    kind_ = Figure::Kind::time;
    auto const colon = lower(i).find(':');
    bool const isClock = colon != std::string_view::npos && isNumeral(lower(i).substr(0, colon)) &&
                         isNumeral(lower(i).substr(colon + 1));
    if (isClock) return is(i + 1, halfOfDay) ? i + 2 : i + 1;
    bool const isHour = isNumeral(lower(i)) || is(i, numberWord);
    return isHour && is(i + 1, halfOfDay) ? i + 2 : i;
  }

  /// "$1,200", "15 percent", "twelve thousand dollars", "40 seats". A number word on its own is
  /// mostly no figure ("one of them"), so it counts only with a unit or in company.
  std::size_t number(std::size_t i) {
    auto const first = signs(lower(i));
    bool const isNumeralFirst = isNumeral(first.numeral);
    if (!isNumeralFirst && !is(i, numberWord)) return i;
    auto end = i + 1;
    while (end < words_.size() && continues(end - 1) && isPartOfNumber(end, isNumeralFirst)) ++end;
    auto const count = end - i;
    bool const hasUnit = end < words_.size() && continues(end - 1);
    if (first.hasPercent) return found(Figure::Kind::percentage, end);
    if (first.hasCurrency) return found(Figure::Kind::amount, end);
    if (hasUnit && is(end, percent)) {
      return found(Figure::Kind::percentage, end + 1);
    }
    if (hasUnit && is(end, currency)) return found(Figure::Kind::amount, end + 1);
    if (hasUnit && is(end, unit)) return found(Figure::Kind::quantity, end + 1);
    return isNumeralFirst || count > 1 ? found(Figure::Kind::quantity, end) : i;
  }

  [[nodiscard]] bool isPartOfNumber(std::size_t at, bool afterNumeral) const {
    if (afterNumeral) return is(at, scale);
    if (is(at, numberWord)) return true;
    return lower(at) == "and" && is(at + 1, numberWord) && is(at - 1, scale);
  }

  std::size_t found(Figure::Kind kind, std::size_t end) {
    kind_ = kind;
    return end;
  }

  /// "may" and "march" are months only as names.
  [[nodiscard]] bool isMonth(std::size_t at) const {
    if (!is(at, month)) return false;
    if (lower(at) != "may" && lower(at) != "march") return true;
    return words_[at].text.front() == 'M' && at > 0;
  }

  [[nodiscard]] std::string_view lower(std::size_t at) const {
    return at < words_.size() ? std::string_view(words_[at].lower) : std::string_view();
  }

  [[nodiscard]] bool continues(std::size_t at) const { return !words_[at].endsClause; }

  [[nodiscard]] std::string span(std::size_t first, std::size_t end) const {
    auto const begin = words_[first].text.begin();
    return {begin, words_[end - 1].text.end()};
  }

  [[nodiscard]] bool is(std::size_t at, Role role) const {
    return at < roles_.size() && (roles_[at] & role) != 0;
  }

  Words const& words_;
  std::vector<unsigned> roles_;
  Figure::Kind kind_ = Figure::Kind::quantity;
};

}  // namespace

std::vector<Figure> figures(std::vector<Word> const& words) {
  return Reader(words).read();
}

std::string_view name(Figure::Kind kind) {
  switch (kind) {
    case Figure::Kind::amount:
      return "Amount";
    case Figure::Kind::percentage:
      return "Percentage";
    case Figure::Kind::date:
      return "Date";
    case Figure::Kind::time:
      return "Time";
    case Figure::Kind::quantity:
      return "Quantity";
  }
  return {};
}

}  // namespace vek::services
