// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "views/IdentifiedArrayModel.hpp"

namespace vek::test {
namespace {

struct Word {
  int id;
  std::string text;
  bool operator==(Word const&) const = default;
};

class WordsModel : public IdentifiedArrayModel<Word> {
 public:
  [[nodiscard]] QVariant data(QModelIndex const& index, int) const override {
    return QString::fromStdString(element(index.row()).text);
  }
};

/// A view of the model as any view keeps it: only what it was told to change.
struct Mirror {
  explicit Mirror(WordsModel& model) {
    auto const read = [&model](int row) { return model.data(model.index(row), 0).toString(); };
    QObject::connect(&model, &WordsModel::rowsRemoved,
                     [this](QModelIndex const&, int first, int last) {
                       rows.erase(rows.begin() + first, rows.begin() + last + 1);
                       events += "-";
                     });
    QObject::connect(&model, &WordsModel::rowsInserted,
                     [this, read](QModelIndex const&, int first, int last) {
                       for (int row = first; row <= last; ++row) {
                         rows.insert(rows.begin() + row, read(row));
                       }
                       events += "+";
                     });
    QObject::connect(&model, &WordsModel::dataChanged, [this, read](QModelIndex const& index) {
      rows[static_cast<std::size_t>(index.row())] = read(index.row());
      events += "*";
    });
  }
  std::vector<QString> rows;
  std::string events;
};

std::vector<Word> words(std::string const& letters) {
  std::vector<Word> list;
  for (char const letter : letters) list.push_back({std::tolower(letter), {letter}});
  return list;
}

TEST(ListModel, AViewThatFollowsTheEventsShowsTheList) {
  struct Case {
    std::string from, to, events;
  };
  std::string const many(40, 'a');
  // A letter is a row, and a capital is the same row with another text.
  for (auto const& [from, to, events] : std::vector<Case>{
           {"", "abc", "+"},
           {"abc", "", "-"},
           {"abc", "abc", ""},
           {"abc", "aBc", "*"},
           {"bc", "abc", "+"},
           {"abc", "bc", "-"},
           {"abcd", "axyd", "-+"},
           {"abc", "xAbC", "+**"},
           {"abc", "cba", "-+"},
       }) {
    WordsModel model;
    model.setList(IdentifiedArray(words(from)));
    Mirror mirror(model);
    for (char const letter : from) mirror.rows.push_back(QString(QLatin1Char(letter)));
    model.setList(IdentifiedArray(words(to)));
    std::vector<QString> wanted;
    for (char const letter : to) wanted.push_back(QString(QLatin1Char(letter)));
    EXPECT_EQ(mirror.rows, wanted) << from << " to " << to;
    EXPECT_EQ(mirror.events, events) << from << " to " << to;
  }
}

TEST(ListModel, OneChangeInALongListIsOneRow) {
  std::vector<Word> list;
  for (int i = 0; i < 1000; ++i) list.push_back({i, "same"});
  IdentifiedArray words(std::move(list));
  WordsModel model;
  model.setList(words);
  Mirror mirror(model);
  mirror.rows.resize(1000);
  words.update(700, [](Word& word) { word.text = "other"; });
  model.setList(words);
  EXPECT_EQ(mirror.events, "*");
  EXPECT_EQ(mirror.rows[700], QStringLiteral("other"));
}

}  // namespace
}  // namespace vek::test
