// SPDX-License-Identifier: MIT
#include "services/backend/Summary.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "records/MarkdownText.hpp"
#include "services/backend/Figures.hpp"
#include "services/backend/Sentences.hpp"

namespace vek::services {

namespace {

constexpr std::size_t keyPointLimit = 5;
constexpr std::size_t topicLimit = 5;
constexpr std::size_t listLimit = 50;
// Speech without punctuation is one long sentence.
constexpr std::size_t sentenceLength = 300;
constexpr std::size_t contextLength = 90;

/// What makes a sentence a task: phrases of up to `phraseLength` words.
std::unordered_set<std::string_view> const commitments = {
    "i will",       "i'll",        "we will",   "we'll",       "can you",
    "could you",    "will you",    "would you", "please",      "send",
    "let's",        "follow up",   "need to",   "needs to",    "have to",
    "has to",       "promised to", "make sure", "by monday",   "by tuesday",
    "by wednesday", "by thursday", "by friday", "by tomorrow", "by the end of"};
constexpr std::size_t phraseLength = 4;

std::unordered_set<std::string_view> const commonWords = {
    "a",      "about", "after",   "all",     "also",   "an",     "and",    "any",   "are",
    "as",     "at",    "be",      "because", "been",   "but",    "by",     "can",   "could",
    "did",    "do",    "does",    "for",     "from",   "get",    "go",     "going", "good",
    "had",    "has",   "have",    "he",      "her",    "here",   "him",    "his",   "how",
    "i",      "i'd",   "i'll",    "i'm",     "i've",   "if",     "in",     "into",  "is",
    "it",     "it's",  "its",     "just",    "know",   "let",    "like",   "make",  "me",
    "more",   "much",  "my",      "need",    "no",     "not",    "now",    "of",    "okay",
    "on",     "one",   "or",      "our",     "out",    "please", "really", "right", "she",
    "should", "so",    "some",    "that",    "that's", "the",    "their",  "them",  "then",
    "there",  "they",  "they're", "thing",   "think",  "this",   "to",     "two",   "up",
    "us",     "very",  "want",    "was",     "we",     "we'll",  "we're",  "well",  "were",
    "what",   "when",  "which",   "who",     "will",   "with",   "would",  "yeah",  "yes",
    "you",    "your",  "send",    "you're",  "than",   "over",   "only",   "today", "next",
    "let's",  "don't", "can't"};

struct Sentence {
  std::string_view text;
  std::vector<Word> words;
};

bool isTopical(Word const& word) {
  bool const isName = word.lower.size() > 2 && !(word.lower[0] >= '0' && word.lower[0] <= '9');
  return isName && word.lower[0] != '$' && !commonWords.contains(word.lower);
}

/// How often each word that says something was said.
using Frequencies = std::unordered_map<std::string_view, std::size_t>;

Frequencies frequencies(std::vector<Sentence> const& sentences) {
  Frequencies result;
  for (auto const& sentence : sentences) {
    for (auto const& word : sentence.words) {
      if (isTopical(word)) ++result[word.lower];
    }
  }
  return result;
}

bool isCommitment(Sentence const& sentence) {
  std::string text;
  std::vector<std::size_t> starts;
  for (auto const& word : sentence.words) {
    starts.push_back(text.size());
    text.append(word.lower).append(" ");
  }
  starts.push_back(text.size());
  auto const count = sentence.words.size();
  for (std::size_t first = 0; first < count; ++first) {
    auto const last = std::min(first + phraseLength, count);
    for (auto end = first + 1; end <= last; ++end) {
      auto const length = starts[end] - 1 - starts[first];
      if (commitments.contains(std::string_view(text).substr(starts[first], length))) return true;
    }
  }
  return false;
}

/// The start of the UTF-8 character that the byte at `at` belongs to.
std::size_t startOfCharacter(std::string_view text, std::size_t at) {
  while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U) --at;
  return at;
}

/// The text up to the last blank within `length`.
std::string shortened(std::string_view text, std::size_t length) {
  if (text.size() <= length) return std::string(text);
  auto cut = text.find_last_of(' ', length);
  if (cut == std::string_view::npos) cut = startOfCharacter(text, length);
  return std::string(text.substr(0, cut)) + "…";
}

/// The sentences that hold most of the frequent words, in the order they were said.
std::vector<Sentence const*> keyPoints(std::vector<Sentence> const& sentences,
                                       Frequencies const& frequencies) {
  struct Candidate {
    double score;
    std::size_t index;
  };
  std::vector<Candidate> candidates;
  for (std::size_t i = 0; i < sentences.size(); ++i) {
    double score = 0;
    for (auto const& word : sentences[i].words) {
      if (isTopical(word)) score += static_cast<double>(frequencies.at(word.lower));
    }
    // Long sentences hold more words and say no more for it.
    candidates.push_back(
        {score / std::sqrt(static_cast<double>(sentences[i].words.size() + 1)), i});
  }
  std::sort(candidates.begin(), candidates.end(), [](auto const& a, auto const& b) {
    return a.score != b.score ? a.score > b.score : a.index < b.index;
  });
  candidates.resize(std::min({candidates.size(), keyPointLimit, sentences.size() / 3 + 1}));
  std::sort(candidates.begin(), candidates.end(),
            [](auto const& a, auto const& b) { return a.index < b.index; });
  std::vector<Sentence const*> result;
  result.reserve(candidates.size());
  for (auto const& candidate : candidates) result.push_back(&sentences[candidate.index]);
  return result;
}

/// The words said most often, if any was said twice.
std::string topics(Frequencies const& frequencies) {
  std::vector<std::pair<std::string_view, std::size_t>> ranked;
  for (auto const& [word, count] : frequencies) {
    if (count > 1) ranked.emplace_back(word, count);
  }
  std::sort(ranked.begin(), ranked.end(), [](auto const& a, auto const& b) {
    return a.second != b.second ? a.second > b.second : a.first < b.first;
  });
  ranked.resize(std::min(ranked.size(), topicLimit));
  std::string result;
  for (auto const& [word, count] : ranked) {
    result += fmt::format("{}{}", result.empty() ? "" : ", ", markdownText(word));
  }
  return result;
}

void writeTasks(std::string& markdown, std::vector<Sentence> const& sentences) {
  std::size_t count = 0;
  for (auto const& sentence : sentences) {
    if (!isCommitment(sentence)) continue;
    if (count == 0) markdown += "\n## Tasks\n\n";
    markdown += fmt::format("- [ ] {}\n", markdownText(shortened(sentence.text, sentenceLength)));
    if (++count == listLimit) return;
  }
}

void writeFigures(std::string& markdown, std::vector<Sentence> const& sentences) {
  std::set<std::string> seen;
  for (auto const& sentence : sentences) {
    for (auto const& figure : figures(sentence.words)) {
      if (!seen.insert(figure.text).second) continue;
      if (seen.size() == 1) {
        markdown += "\n## Figures and dates\n\n| What | Kind | Said |\n| --- | --- | --- |\n";
      }
      markdown += fmt::format("| {} | {} | {} |\n", markdownText(figure.text), name(figure.kind),
                              markdownText(shortened(sentence.text, contextLength)));
      if (seen.size() == listLimit) return;
    }
  }
}

}  // namespace

std::string summary(std::string_view transcript) {
  std::vector<Sentence> all;
  std::size_t wordCount = 0;
  for (auto const text : sentences(transcript)) {
    all.push_back({text, words(text)});
    wordCount += all.back().words.size();
  }
  if (all.empty()) return {};

  auto const counts = frequencies(all);
  auto markdown =
      fmt::format("# Summary\n\n{} {} in {} {}.", wordCount, wordCount == 1 ? "word" : "words",
                  all.size(), all.size() == 1 ? "sentence" : "sentences");
  if (auto const said = topics(counts); !said.empty()) markdown += " **Topics:** " + said + ".";
  markdown += "\n\n## Key points\n\n";
  for (auto const* sentence : keyPoints(all, counts)) {
    markdown += fmt::format("- {}\n", markdownText(shortened(sentence->text, sentenceLength)));
  }
  writeTasks(markdown, all);
  writeFigures(markdown, all);
  return markdown;
}

}  // namespace vek::services
