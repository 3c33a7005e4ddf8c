// SPDX-License-Identifier: MIT
#include "runtime/IdentifiedArray.hpp"

#include <algorithm>
#include <future>
#include <random>
#include <string>
#include <thread>

namespace vek {
namespace {

struct Row {
  int id = 0;
  std::string text;
  bool operator==(Row const&) const = default;
};
using Rows = IdentifiedArray<Row>;

Rows rows(int count) {
  std::vector<Row> elements;
  for (int i = 0; i < count; ++i) elements.push_back({i, "row " + std::to_string(i)});
  return Rows(std::move(elements));
}

/// The plain way to do the same.
struct Model {
  std::vector<Row> elements;

  auto find(int id) {
    return std::find_if(elements.begin(), elements.end(),
                        [&](Row const& row) { return row.id == id; });
  }
  bool update(int id, std::string text) {
    auto const found = find(id);
    if (found != elements.end()) found->text = std::move(text);
    return found != elements.end();
  }
  void set(Row row) {
    if (auto const found = find(row.id); found != elements.end()) {
      *found = std::move(row);
    } else {
      elements.push_back(std::move(row));
    }
  }
  bool remove(int id) {
    return std::erase_if(elements, [&](Row const& row) { return row.id == id; }) > 0;
  }
};

void expectSame(Rows const& array, Model const& model) {
  ASSERT_EQ(array.size(), model.elements.size());
  ASSERT_TRUE(std::equal(array.begin(), array.end(), model.elements.begin()));
  for (std::size_t i = 0; i < array.size(); ++i) {
    auto const& row = model.elements[i];
    ASSERT_EQ(array.find(row.id), &array[i]);
    ASSERT_TRUE(array.ids().contains(row.id));
  }
}

TEST(IdentifiedArray, BehavesAsAVectorAndItsCopiesAsValues) {
  std::mt19937 random(7);
  auto below = [&](int bound) { return std::uniform_int_distribution(0, bound - 1)(random); };
  std::vector<std::pair<Rows, Model>> versions(4);
  for (int step = 0; step < 4'000; ++step) {
    auto& [array, model] = versions[static_cast<std::size_t>(below(4))];
    auto const id = below(150);
    auto const text = std::to_string(step);
    switch (below(8)) {
      case 0:
        ASSERT_EQ(array.remove(id), model.remove(id));
        break;
      case 1:
        versions[static_cast<std::size_t>(below(4))] = {array, model};
        break;
      case 2:
      case 3:
      case 4:
        ASSERT_EQ(array.update(id, [&](Row& row) { row.text = text; }), model.update(id, text));
        break;
      default:
        array.set({id, text});
        model.set({id, text});
    }
    ASSERT_EQ(array.contains(id), model.find(id) != model.elements.end());
    if (step % 20 == 0) {
      for (auto const& [each, expected] : versions) expectSame(each, expected);
      ASSERT_EQ(versions[0].first == versions[1].first,
                versions[0].second.elements == versions[1].second.elements);
    }
  }
}

TEST(IdentifiedArray, ChangeCopiesOneChunkAndSharesTheOthers) {
  auto const before = rows(1'000);
  auto after = before;
  after.update(500, [](Row& row) { row.text = "changed"; });
  int moved = 0;
  for (std::size_t i = 0; i < before.size(); ++i) moved += &before[i] != &after[i];
  EXPECT_EQ(moved, Rows::chunkSize);
  EXPECT_EQ(before.find(500)->text, "row 500");
  EXPECT_NE(before, after);
  auto const* const place = after.find(500);
  after.update(501, [](Row& row) { row.text = "changed too"; });
  EXPECT_EQ(after.find(500), place) << "A chunk that is not shared is changed in place.";
}

TEST(IdentifiedArray, EqualityLooksAtElementsAndOrder) {
  auto const one = rows(100);
  auto two = rows(100);
  EXPECT_EQ(one, two);
  two.update(99, [](Row& row) { row.text += "!"; });
  EXPECT_NE(one, two);
  EXPECT_NE(Rows({{1, ""}, {2, ""}}), Rows({{2, ""}, {1, ""}}));
  EXPECT_EQ(Rows(), Rows(std::vector<Row>()));
  auto emptied = rows(1);
  emptied.remove(0);
  EXPECT_EQ(Rows(), emptied);
  EXPECT_EQ(Rows().ids(), emptied.ids());
}

TEST(IdentifiedArray, IDsChangeWhenElementsComeGoOrMoveOnly) {
  auto array = rows(40);
  auto const ids = array.ids();
  array.update(3, [](Row& row) { row.text = "changed"; });
  EXPECT_EQ(array.ids(), ids);
  EXPECT_NE(Rows({{1, ""}, {2, ""}}).ids(), Rows({{2, ""}, {1, ""}}).ids());
  array.remove(3);
  EXPECT_NE(array.ids(), ids);
  EXPECT_TRUE(ids.contains(3) && !array.ids().contains(3));
}

/// Tells on which thread it goes.
using Witness = std::shared_ptr<std::promise<std::thread::id>>;
Witness witness(std::future<std::thread::id>& went) {
  Witness result(new std::promise<std::thread::id>(), [](auto* promise) {
    promise->set_value(std::this_thread::get_id());
    delete promise;
  });
  went = result->get_future();
  return result;
}

TEST(IdentifiedArray, ALongListIsTakenDownElsewhereAndAChangedElementIsNot) {
  struct Watched {
    int id = 0;
    Witness witness;
  };
  auto const here = std::this_thread::get_id();
  for (auto const& [count, isElsewhere] : {std::pair{100, false}, std::pair{10'000, true}}) {
    std::vector<Watched> elements;
    for (int i = 0; i < count; ++i) elements.push_back({.id = i, .witness = nullptr});
    std::future<std::thread::id> went;
    elements[7].witness = witness(went);
    IdentifiedArray list(std::move(elements));
    auto copy = list;
    list.update(7, [](Watched& watched) { watched.witness = nullptr; });
    copy = list;
    EXPECT_EQ(went.get(), here);
    list.update(7, [&](Watched& watched) { watched.witness = witness(went); });
    copy = {};
    list = {};
    EXPECT_EQ(went.get() != here, isElsewhere) << count;
  }
}

TEST(IdentifiedArray, RefusesAnIdentifierTwice) {
  EXPECT_THROW(Rows({{1, "a"}, {2, "b"}, {1, "c"}}), std::invalid_argument);
}

}  // namespace
}  // namespace vek
