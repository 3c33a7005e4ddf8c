// SPDX-License-Identifier: MIT
#include "markdown/ReadingCost.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "markdown/TakeLine.hpp"

namespace vek {

namespace {

/// A step takes about a nanosecond. Each text may take so many, and some for each of its bytes.
constexpr double steps = 50e6;
constexpr double stepsPerByte = 100;
constexpr std::size_t mostCells = 200'000;
/// In each quote or list that is open, for each line that may go on in it.
constexpr double stepsPerLevel = 10;

bool isOneOf(std::string_view characters, char c) {
  return characters.find(c) != std::string_view::npos;
}

bool isMadeOf(std::string_view line, std::string_view characters) {
  return line.find_first_not_of(characters) == std::string_view::npos;
}

/// How long the mark of a quote or a list is that a line begins with; nothing without one.
std::size_t markLength(std::string_view line) {
  if (line.starts_with('>')) return 1;
  auto const digits = std::min(line.find_first_not_of("0123456789"), line.size());
  auto const mark = line.substr(digits);
  bool const isMark = mark.size() > 1 && isOneOf(digits > 0 ? ".)" : "-+*", mark[0]);
  return isMark && isOneOf(" \t", mark[1]) ? digits + 1 : 0;
}

/// How many quotes and lists within one another a line begins.
std::size_t levelsOf(std::string_view line) {
  // The marks of a rule are none of theirs.
  auto const last = line.find_last_not_of(" \t");
  if (last != std::string_view::npos && isOneOf("-*", line[last])) {
    auto const rule = std::array{line[last], ' ', '\t'};
    line = line.substr(0, line.find_last_not_of({rule.data(), rule.size()}) + 1);
  }
  std::size_t const indent = std::min(line.find_first_not_of(" \t"), line.size());
  for (std::size_t count = 0;; ++count) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    auto const length = markLength(line);
    // Those around it that it is indented for have a blank and a mark at least.
    if (length == 0) return count > 0 ? count + indent / 2 : 0;
    line.remove_prefix(length);
  }
}

/// A line apart from the quotes and blanks around it.
struct Row {
  explicit Row(std::string_view line)
      : prefix(line.substr(0, line.find_first_not_of(" \t>"))),
        content(trimmed(line.substr(prefix.size()))) {}

  static std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
  }

  /// Whether cmark-gfm may take it for the one between the header and the rows of a table.
  [[nodiscard]] bool mayDelimit() const {
    return content.find('-') != std::string_view::npos && isMadeOf(content, "|-: \t");
  }

  /// How many cells it has, where nothing else than a row can be meant.
  [[nodiscard]] std::size_t sureCells() const {
    bool const isSure = content.size() > 2 && content.starts_with('|') && content.ends_with('|') &&
                        !isOneOf(content, '\\') && content.find("||") == std::string_view::npos;
    return isSure ? static_cast<std::size_t>(std::ranges::count(content, '|')) - 1 : 0;
  }

  std::string_view prefix;
  std::string_view content;
};

bool isDelimiter(std::string_view cell) {
  cell = Row::trimmed(cell);
  if (cell.starts_with(':')) cell.remove_prefix(1);
  if (cell.ends_with(':')) cell.remove_suffix(1);
  return !cell.empty() && isMadeOf(cell, "-");
}

/// Whether a table surely begins with two lines.
bool beginTable(Row const& header, Row const& delimiters) {
  auto const cells = delimiters.sureCells();
  if (cells == 0 || cells != header.sureCells() || header.prefix != delimiters.prefix) return false;
  for (auto rest = delimiters.content.substr(1); !rest.empty();) {
    auto const cell = rest.substr(0, rest.find('|'));
    if (!isDelimiter(cell)) return false;
    rest.remove_prefix(cell.size() + 1);
  }
  return true;
}

/// Whether a line begins an item, whatever stands above it.
bool beginsItem(std::string_view line) {
  constexpr std::size_t deepestItem = 3;
  auto const indent = std::min(line.find_first_not_of(' '), line.size());
  auto const item = line.substr(indent);
  bool const isMarked = item.starts_with("- ") || item.starts_with("* ") || item.starts_with("+ ");
  return indent <= deepestItem && isMarked && !isMadeOf(item.substr(1), " \t");
}

class Estimate {
 public:
  void addLine(std::string_view line) {
    auto const levels = levelsOf(line);
    deepest_ = std::max(deepest_, levels);
    readSteps_ += product(levels, line.size()) + stepsPerLevel * static_cast<double>(deepest_);
    // Only an empty line and an item are sure to end a paragraph or a table.
    bool const isEmpty = isMadeOf(line, " \t>");
    if (isEmpty || beginsItem(line)) endStretch();
    if (isEmpty) return;
    addCharacters(line);
    addRow(line);
  }

  ReadingCost end(std::size_t size) {
    endStretch();
    auto const length = static_cast<double>(size);
    auto const most = steps + stepsPerByte * length;
    return {.canRead = readSteps_ <= most,
            .canReadTables = tableSteps_ <= most && cells_ <= mostCells + size,
            .canReadAutolinks = linkSteps_ <= most};
  }

 private:
  /// Lines of one paragraph or table, as far as that can be told.
  struct Stretch {
    std::size_t size = 0, tags = 0;
    std::size_t delimiters = 0, brackets = 0;
    std::size_t columns = 0;
    /// What the header of a table would be looked for in.
    std::size_t headSize = 0, headLines = 0, headBars = 0;
    Row last{{}};
  };

  static double product(std::size_t a, std::size_t b) {
    return static_cast<double>(a) * static_cast<double>(b);
  }

  void addCharacters(std::string_view line) {
    std::size_t runStart = 0;
    std::size_t linkMarks = 0;
    auto const endRun = [&](std::size_t at) {
      // Where a bare link ends is looked for again from each of these on.
      linkSteps_ += product(std::exchange(linkMarks, 0), at - std::exchange(runStart, at));
    };
    for (std::size_t at = 0; at < line.size(); ++at) {
      switch (line[at]) {
        case '<':
          if (at + 1 < line.size() && isOneOf("?!", line[at + 1])) ++stretch_.tags;
          break;
        case '*':
        case '_':
        case '~':
          ++stretch_.delimiters;
          break;
        case '[':
          ++stretch_.brackets;
          break;
        case ']':
          closeBracket();
          break;
        case '.':
        case ':':
        case '@':
        case ')':
          ++linkMarks;
          break;
        case ' ':
        case '\t':
          endRun(at);
          break;
        default:
          break;
      }
    }
    endRun(line.size());
  }

  void closeBracket() {
    // What a link may begin with is gone through at its end.
    readSteps_ += static_cast<double>(stretch_.delimiters + stretch_.brackets);
    if (stretch_.brackets > 0) --stretch_.brackets;
  }

  void addRow(std::string_view line) {
    Row const row(line);
    auto const bars = static_cast<std::size_t>(std::ranges::count(line, '|'));
    if (row.mayDelimit()) {
      stretch_.columns = std::max(stretch_.columns, bars + 1);
      // The last line so far may be the header, and is looked for from the first one on.
      tableSteps_ += product(stretch_.headSize, stretch_.headLines + stretch_.headBars);
      if (beginTable(stretch_.last, row))
        stretch_.headSize = stretch_.headLines = stretch_.headBars = 0;
    }
    if (stretch_.columns > 0) {
      cells_ += stretch_.columns;
      tableSteps_ += product(bars, bars);
    }
    stretch_.last = row;
    stretch_.headBars += bars;
    ++stretch_.headLines;
    stretch_.headSize += line.size() + 1;
    stretch_.size += line.size() + 1;
  }

  void endStretch() {
    // The end of a tag is looked for from each of them on.
    readSteps_ += product(stretch_.tags, stretch_.size);
    stretch_ = {};
  }

  Stretch stretch_;
  std::size_t deepest_ = 0;
  double readSteps_ = 0;
  double tableSteps_ = 0;
  double linkSteps_ = 0;
  std::size_t cells_ = 0;
};

}  // namespace

ReadingCost ReadingCost::of(std::string_view text) {
  Estimate estimate;
  auto const size = text.size();
  while (!text.empty()) estimate.addLine(takeLine(text));
  return estimate.end(size);
}

}  // namespace vek
