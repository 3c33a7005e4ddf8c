// SPDX-License-Identifier: MIT
#include "markdown/ReadingCost.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace vek {

namespace {

/// A step takes about a nanosecond. Each text may take so many, and some for each of its bytes.
constexpr double steps = 50e6;
constexpr double stepsPerByte = 100;
constexpr std::size_t cells = 200'000;
/// In bytes, indentation included.
constexpr std::size_t longestMarkers = 100;

bool isOneOf(std::string_view characters, char c) {
  return characters.find(c) != std::string_view::npos;
}

bool isMadeOf(std::string_view line, std::string_view characters) {
  return line.find_first_not_of(characters) == std::string_view::npos;
}

/// Whether a line stands in more quotes and lists than fit on a page.
bool isTooDeep(std::string_view line) {
  if (line.size() <= longestMarkers) return false;
  bool hasMarker = false;
  for (std::size_t at = 0; at < longestMarkers; ++at) {
    bool const isMarker =
        line[at] == '>' || (isOneOf("-+*.)", line[at]) && isOneOf(" \t", line[at + 1]));
    if (!isMarker && !isOneOf(" \t0123456789", line[at])) return false;
    hasMarker = hasMarker || isMarker;
  }
  return hasMarker;
}

/// Whether cmark-gfm may take a line for the one between the header and the rows of a table.
bool isDelimiterRow(std::string_view line) {
  return line.find('-') != std::string_view::npos && isMadeOf(line, "|-: \t>+*.)0123456789");
}

class Estimate {
 public:
  void addLine(std::string_view line) {
    isTooDeep_ = isTooDeep_ || isTooDeep(line);
    // Only an empty line is sure to end a paragraph or a table.
    if (isMadeOf(line, " \t>")) {
      endStretch();
      return;
    }
    auto const barsBefore = stretch_.bars;
    addCharacters(line);
    addRow(line, stretch_.bars - barsBefore);
  }

  ReadingCost end(std::size_t size) {
    endStretch();
    auto const length = static_cast<double>(size);
    auto const most = steps + stepsPerByte * length;
    return {.canRead = !isTooDeep_ && readSteps_ <= most,
            .canReadTables = tableSteps_ <= most && cells_ <= cells + size,
            .canReadAutolinks = linkSteps_ <= most};
  }

 private:
  /// Lines without an empty one among them.
  struct Stretch {
    std::size_t size = 0, lines = 0;
    std::size_t bars = 0, columns = 0;
    std::size_t tags = 0, openers = 0, closers = 0;
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
        case '[':
        case '*':
        case '_':
        case '~':
          ++stretch_.openers;
          break;
        case ']':
          ++stretch_.closers;
          break;
        case '|':
          ++stretch_.bars;
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

  void addRow(std::string_view line, std::size_t bars) {
    if (isDelimiterRow(line)) {
      stretch_.columns = std::max(stretch_.columns, bars + 1);
      // The last line so far may be the header, and is looked for from the first one on.
      tableSteps_ += product(stretch_.size, stretch_.lines + stretch_.bars);
    }
    if (stretch_.columns > 0) {
      cells_ += stretch_.columns;
      tableSteps_ += product(bars, bars);
    }
    ++stretch_.lines;
    stretch_.size += line.size() + 1;
  }

  void endStretch() {
    // What a tag or a link may begin with is looked for or gone through at each of them.
    readSteps_ += product(stretch_.tags, stretch_.size);
    readSteps_ += product(stretch_.openers, stretch_.closers);
    stretch_ = {};
  }

  Stretch stretch_;
  bool isTooDeep_ = false;
  double readSteps_ = 0;
  double tableSteps_ = 0;
  double linkSteps_ = 0;
  std::size_t cells_ = 0;
};

}  // namespace

ReadingCost ReadingCost::of(std::string_view text) {
  Estimate estimate;
  auto const size = text.size();
  while (!text.empty()) {
    auto const line = text.substr(0, text.find_first_of("\r\n"));
    estimate.addLine(line);
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    if (text.starts_with('\n') && line.data()[line.size()] == '\r') text.remove_prefix(1);
  }
  return estimate.end(size);
}

}  // namespace vek
