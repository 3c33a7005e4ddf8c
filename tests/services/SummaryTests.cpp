// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "services/backend/Figures.hpp"
#include "services/backend/Summary.hpp"

namespace vek::test {

namespace {

using services::summary;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::Not;

std::vector<std::string> spoken(std::string_view sentence) {
  std::vector<std::string> result;
  for (auto const& figure : services::figures(services::words(sentence))) {
    result.push_back(std::string(services::name(figure.kind)) + ": " + figure.text);
  }
  return result;
}

TEST(Summary, HoldsKeyPointsTasksAndFigures) {
  EXPECT_EQ(summary("Good morning. The budget is twelve thousand dollars. I will send the budget "
                    "by Friday afternoon. Thanks!"),
            R"(# Summary

17 words in 4 sentences. **Topics:** budget.

## Key points

- The budget is twelve thousand dollars.
- I will send the budget by Friday afternoon.

## Tasks

- [ ] I will send the budget by Friday afternoon.

## Figures and dates

| What | Kind | Said |
| --- | --- | --- |
| twelve thousand dollars | Amount | The budget is twelve thousand dollars. |
| Friday afternoon | Date | I will send the budget by Friday afternoon. |
)");
}

TEST(Summary, OfNothingIsNothing) {
  EXPECT_EQ(summary(""), "");
  EXPECT_EQ(summary(" \n\t "), "");
}

TEST(Summary, LeavesOutWhatWasNotSaid) {
  auto const markdown = summary("The weather was fine.");
  EXPECT_THAT(markdown, Not(HasSubstr("## Tasks")));
  EXPECT_THAT(markdown, Not(HasSubstr("## Figures")));
  EXPECT_THAT(markdown, Not(HasSubstr("Topics")));
}

TEST(Summary, KnowsACommitmentByItsWords) {
  for (auto const* task :
       {"I'll call you", "I\xE2\x80\x99ll call you", "We will ship it", "Can you sign it",
        "Please, have a look", "Send me the file", "We have to decide", "It is due by Friday"}) {
    EXPECT_THAT(summary(task), HasSubstr("## Tasks")) << task;
  }
  for (auto const* other : {"I willed it", "The sender wrote", "He was pleased", "Canyon roads"}) {
    EXPECT_THAT(summary(other), Not(HasSubstr("## Tasks"))) << other;
  }
}

TEST(Summary, SpeechIsNoMarkdown) {
  auto const markdown = summary("I will pay 5 | 6 for *all* <b>of</b> [it](x) # 1.");
  EXPECT_THAT(markdown, HasSubstr("5 \\| 6 for \\*all\\* \\<b\\>of\\</b\\> \\[it\\](x) \\# 1."));
}

TEST(Summary, SpeechWithoutAStopIsShortened) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "and we will go on ";
  EXPECT_LT(summary(text).size(), 1500U);
  EXPECT_LT(summary(std::string(5000, 'x') + " by Friday").size(), 1500U);
}

TEST(Sentences, EndAtAStopThatIsNoPartOfAWord) {
  EXPECT_THAT(services::sentences("Dr. Lee paid 3.50 today. Really?! Yes\nno"),
              ElementsAre("Dr. Lee paid 3.50 today.", "Really?!", "Yes", "no"));
}

TEST(Figures, AreReadAsTheyAreSaid) {
  struct Case {
    char const* sentence;
    std::vector<std::string> expected;
  };
  Case const cases[] = {
      {"It is twelve thousand dollars", {"Amount: twelve thousand dollars"}},
      {"It is $1,200, or \xE2\x82\xAC"
       "1 million",
       {"Amount: $1,200",
        "Amount: \xE2\x82\xAC"
        "1 million"}},
      {"two hundred and fifty euros", {"Amount: two hundred and fifty euros"}},
      {"up 15% and fifteen percent", {"Percentage: 15%", "Percentage: fifteen percent"}},
      {"forty-two people, 40 seats", {"Quantity: forty-two people", "Quantity: 40 seats"}},
      {"one of them, two, three", {}},
      {"a hundred times", {}},
      {"twenty five times", {"Quantity: twenty five"}},
      {"on Friday afternoon or next Monday", {"Date: Friday afternoon", "Date: next Monday"}},
      {"in March, 3 April 2025 and on May 1st",
       {"Date: March", "Date: 3 April 2025", "Date: May 1st"}},
      {"They march and they may", {}},
      {"March on, you may", {}},
      {"tomorrow morning at 3 pm, not 10:30",
       {"Date: tomorrow morning", "Time: 3 pm", "Time: 10:30"}},
      {"by the third quarter of 2026, next year",
       {"Date: third quarter", "Date: 2026", "Date: next year"}},
      {"this is it", {}},
      {"", {}},
  };
  for (auto const& [sentence, expected] : cases) {
    EXPECT_THAT(spoken(sentence), ElementsAreArray(expected)) << sentence;
  }
}

}  // namespace

}  // namespace vek::test
