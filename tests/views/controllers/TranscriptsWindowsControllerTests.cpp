// SPDX-License-Identifier: MIT
#include "views/TranscriptsWindowsController.hpp"

#include <gtest/gtest.h>
#include <QPointer>
#include <QScreen>
#include <QTest>

#include "support/PendingCalls.hpp"
#include "views/Text.hpp"
#include "views/Views.hpp"

namespace vek::test {
namespace {

using Action = TranscriptsListFeature::Action;

class TranscriptsWindowsControllerTests : public testing::Test {
 protected:
  static Transcript transcript(int day) {
    return {.id = UUID::random(), .startDate = Date(std::chrono::days(day))};
  }

  void open(Transcript const& transcript) { store->send(Action::openTrasnscript{transcript}); }

  QQuickWindow* window(Transcript const& transcript) {
    auto const found = controller.openWindows().find(transcript.id);
    return found == controller.openWindows().end() ? nullptr : found->second.get();
  }

  static bool eventually(auto holds) { return QTest::qWaitFor(holds, 10'000); }

  PendingCalls<TranscriptContentDTO> contents;
  std::unique_ptr<QQmlEngine> engine = makeEngine();
  TranscriptsWindowsController::ListStore::Shared store = [this] {
    APIClient api;
    api.getTranscriptContent = [this](UUID) { return contents.call(); };
    return withDependencies([&](DependencyValues& values) { values.set(apiClient, api); },
                            [] {
                              return TranscriptsWindowsController::ListStore::make(
                                  TranscriptsListFeature::State{},
                                  [] { return TranscriptsListFeature(); });
                            });
  }();
  TranscriptsWindowsController controller{*engine, store};
};

TEST_F(TranscriptsWindowsControllerTests, EachOpenedTranscriptHasAWindowOfItsOwn) {
  auto const first = transcript(20000);
  auto const second = transcript(20001);
  open(first);
  open(second);
  ASSERT_EQ(controller.openWindows().size(), 2U);
  for (auto const& opened : {first, second}) {
    auto& shown = *window(opened);
    EXPECT_TRUE(shown.isVisible());
    EXPECT_EQ(shown.title(), text(opened.startDate));
    EXPECT_EQ(shown.size(), QSize(400, 400));
    EXPECT_EQ(shown.minimumSize(), QSize(300, 300));
    auto const offset = shown.geometry().center() - shown.screen()->availableGeometry().center();
    EXPECT_LE(offset.manhattanLength(), 2);
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return window(second)->isActive(); }));

  auto* const before = window(first);
  open(first);
  EXPECT_EQ(window(first), before);
  EXPECT_EQ(controller.openWindows().size(), 2U);
}

TEST_F(TranscriptsWindowsControllerTests, AClosedWindowClosesItsTranscriptAndNoOther) {
  auto const first = transcript(20000);
  auto const second = transcript(20001);
  open(first);
  open(second);
  QPointer<QQuickWindow> const closed = window(first);
  closed->close();
  EXPECT_EQ(window(first), nullptr);
  EXPECT_NE(window(second), nullptr);
  EXPECT_EQ(store->state().openedTranscripts.size(), 1U);
  EXPECT_TRUE(QTest::qWaitFor([&] { return closed.isNull(); }));

  open(first);
  ASSERT_NE(window(first), nullptr);
  EXPECT_TRUE(window(first)->isVisible());
}

TEST_F(TranscriptsWindowsControllerTests, ClosingDuringAFetchLeavesNothingOpen) {
  auto const fetched = transcript(20000);
  open(fetched);
  using OfElement = IdentifiedAction<UUID, TranscriptFeature::Action>;
  store->send(Action::transcript{
      OfElement::element{fetched.id, TranscriptFeature::Action::refetchContentButtonClicked{}}});
  ASSERT_TRUE(eventually([&] { return contents.waiting() == 1; }));
  window(fetched)->close();
  EXPECT_TRUE(eventually([&] { return contents.cancelled() == 1; }));
  contents.answer({.transcript = "late", .analysis = "late"});
  QTest::qWait(0);
  EXPECT_TRUE(controller.openWindows().empty());
  EXPECT_TRUE(store->state().openedTranscripts.empty());
}

TEST_F(TranscriptsWindowsControllerTests, AWindowSurvivesALogout) {
  auto const opened = transcript(20000);
  open(opened);
  store->send(Action::logOut{});
  ASSERT_NE(window(opened), nullptr);
  EXPECT_TRUE(window(opened)->isVisible());
}

}  // namespace
}  // namespace vek::test
