// SPDX-License-Identifier: MIT
#include "runtime/ForEach.hpp"

#include "runtime/Match.hpp"
#include "runtime/Store.hpp"
#include "support/Reports.hpp"
#include "support/RunMainQueue.hpp"

namespace vek {
namespace {

/// A document in a list of open ones. It saves in an effect that waits for its answer.
struct Document {
  struct State {
    int id = 0;
    std::string text;
    bool operator==(State const&) const = default;
  };
  struct Action {
    struct save {};
    struct saved {};
    struct abort {};
    struct closeClicked {};
    std::variant<save, saved, abort, closeClicked> value;
  };
  enum class CancelID { saving };

  std::shared_ptr<std::vector<Completion<bool>>> answers;
  std::shared_ptr<int> stopped;

  Effect<Action> reduce(State& state, Action const& action) const {
    return match(
        action, [&](Action::save) { return saveEffect(); },
        [&](Action::saved) {
          state.text += "saved ";
          return Effect<Action>::none();
        },
        [&](Action::abort) { return Effect<Action>::cancel(CancelID::saving); },
        [&](Action::closeClicked) { return Effect<Action>::none(); });
  }

  [[nodiscard]] Effect<Action> saveEffect() const {
    return Effect<Action>::run([this](Send<Action> send) -> Task<> {
             bool const again = co_await callbackOperation<bool>(
                 [this](Completion<bool> answer) { answers->push_back(std::move(answer)); },
                 [this] { ++*stopped; });
             send({Action::saved{}});
             if (again) send({Action::closeClicked{}});
             if (!again) send({Action::save{}});
           })
        .cancellable(CancelID::saving);
  }
};

/// Closes a document when it asks to be closed.
struct Desk {
  struct State {
    IdentifiedArray<Document::State> documents;
    IdentifiedArray<Document::State> copies;
    std::string text;
    bool operator==(State const&) const = default;
  };
  struct Action {
    struct documents {
      IdentifiedAction<int, Document::Action> action;
    };
    struct copies {
      IdentifiedAction<int, Document::Action> action;
    };
    struct close {
      int id;
    };
    std::variant<documents, copies, close> value;
  };

  Effect<Action> reduce(State& state, Action const& action) const {
    if (auto const* each = std::get_if<Action::documents>(&action.value)) {
      auto const& [id, inner] = std::get<0>(each->action.value);
      auto const* document = state.documents.find(id);
      state.text += document ? document->text : "missing ";
      if (std::holds_alternative<Document::Action::closeClicked>(inner.value)) {
        state.documents.remove(id);
      }
    } else if (auto const* close = std::get_if<Action::close>(&action.value)) {
      state.documents.remove(close->id);
    }
    return Effect<Action>::none();
  }
};

struct ForEachTest : testing::Test {
  std::shared_ptr<std::vector<Completion<bool>>> answers =
      std::make_shared<std::vector<Completion<bool>>>();
  std::shared_ptr<int> stopped = std::make_shared<int>();
  std::shared_ptr<Store<Desk::State, Desk::Action>> store = Store<Desk::State, Desk::Action>::make(
      {IdentifiedArray<Document::State>({{1, ""}, {2, ""}}),
       IdentifiedArray<Document::State>({{1, ""}}), ""},
      [this] {
        Document const document{answers, stopped};
        return forEach<KeyPath<&Desk::State::copies>, CasePath<Desk::Action, Desk::Action::copies>>(
            forEach<KeyPath<&Desk::State::documents>,
                    CasePath<Desk::Action, Desk::Action::documents>>(Desk(), document),
            document);
      });

  template <class Which>
  void send(int id, Which which) {
    store->send({Desk::Action::documents{{{id, {which}}}}});
    test::runMainQueue();
  }
  void answer(std::size_t which, bool thenClose) const {
    auto const& answer = answers->at(which);
    thenClose ? answer.resolve(true) : answer.resolve(false);
    test::runMainQueue();
  }
  [[nodiscard]] std::string const& text(int id) const {
    return store->state().documents.find(id)->text;
  }
  void TearDown() override {
    send(1, Document::Action::abort{});
    send(2, Document::Action::abort{});
    store->send({Desk::Action::copies{{{1, {Document::Action::abort{}}}}}});
    test::runMainQueue();
    EXPECT_TRUE(CancellablesCollection::shared().isEmpty());
  }
  test::Reports reports;
};

TEST_F(ForEachTest, ElementIsReducedBeforeTheParent) {
  send(2, Document::Action::saved{});
  EXPECT_EQ(store->state().text, "saved ");
}

TEST_F(ForEachTest, ActionForAMissingElementIsReportedAndReachesTheParentOnly) {
  send(7, Document::Action::saved{});
  EXPECT_EQ(store->state().text, "missing ");
  ASSERT_EQ(reports.texts().size(), 1U);
  EXPECT_THAT(reports.texts()[0],
              testing::MatchesRegex(
                  "A \"forEach\" at \"runtime/ForEachTests.cpp:[0-9]+\" received "
                  "an action for a missing element. …\n\n  Action:\n    saved\n\n(.|\n)+"));
}

TEST_F(ForEachTest, RemovalStopsTheEffectsOfThatElementOnly) {
  send(1, Document::Action::save{});
  send(2, Document::Action::save{});
  store->send({Desk::Action::close{1}});
  test::runMainQueue();
  EXPECT_EQ(*stopped, 1);
  answer(0, false);
  EXPECT_TRUE(reports.texts().empty()) << "The stopped effect sends nothing.";
  answer(1, false);
  EXPECT_EQ(text(2), "saved ");
}

TEST_F(ForEachTest, EffectIdsOfTwoElementsNeverCollide) {
  send(1, Document::Action::save{});
  send(2, Document::Action::save{});
  store->send({Desk::Action::copies{{{1, {Document::Action::save{}}}}}});
  test::runMainQueue();
  send(1, Document::Action::abort{});
  EXPECT_EQ(*stopped, 1);
  store->send({Desk::Action::close{1}});
  test::runMainQueue();
  EXPECT_EQ(*stopped, 1) << "The copy has the same id in another list.";
  answer(1, false);
  answer(2, false);
  EXPECT_EQ(text(2), "saved ");
  EXPECT_EQ(store->state().copies.find(1)->text, "saved ");
}

/// What an effect of an element sends is an action like one of a view: effects that come of it
/// stand under the element's own path, not under one more level of it.
TEST_F(ForEachTest, ActionsSentByAnElementsEffectCanCancelAndRemove) {
  send(1, Document::Action::save{});
  answer(0, false);  // Saves once more, from within the first effect.
  send(1, Document::Action::abort{});
  EXPECT_EQ(*stopped, 1);

  send(1, Document::Action::save{});
  send(1, Document::Action::save{});
  answer(2, true);  // Sends the action that closes it.
  EXPECT_FALSE(store->state().documents.contains(1));
  EXPECT_EQ(*stopped, 2);
}

}  // namespace
}  // namespace vek
