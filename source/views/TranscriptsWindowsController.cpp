// SPDX-License-Identifier: MIT
#include "views/TranscriptsWindowsController.hpp"

#include <utility>

#include "views/Placement.hpp"
#include "views/Text.hpp"
#include "views/TranscriptStore.hpp"
#include "views/Views.hpp"
#include "views/WindowClosing.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

namespace {

using State = TranscriptsListFeature::State;
using Action = TranscriptsListFeature::Action;
using OpenedTranscripts = KeyPath<&State::openedTranscripts>;

}  // namespace

TranscriptsWindowsController::TranscriptsWindowsController(QQmlEngine& engine,
                                                           ListStore::Shared listStore)
    : engine_(engine), store(std::move(listStore)) {
  cancellables.push_back(store->publisher<OpenedTranscripts>().subscribe(
      {[this](Opened const& opened) { openedTranscriptsChanged(opened); }, [] {}}));
}

void TranscriptsWindowsController::openedTranscriptsChanged(Opened const& opened) {
  for (auto const& transcript : opened) {
    auto const& id = transcript.id();
    if (!windows.contains(id)) windows.emplace(id, makeTranscriptWindow(id));
  }
  for (auto entry = windows.begin(); entry != windows.end();) {
    if (opened.contains(entry->first)) {
      ++entry;
    } else {
      // It is closing at this moment, and ends when that is over.
      entry->second.release()->deleteLater();
      entry = windows.erase(entry);
    }
  }
}

std::unique_ptr<QQuickWindow> TranscriptsWindowsController::makeTranscriptWindow(UUID const& id) {
  if (!store->state().openedTranscripts.contains(id)) return std::make_unique<QQuickWindow>();
  auto const element = store->scope<OpenedTranscripts, CasePath<Action, Action::transcript>>(id);
  auto transcriptStore = std::make_unique<TranscriptStore>(element);
  auto window = makeWindow(engine_, QStringLiteral("TranscriptWindow"),
                           {{QStringLiteral("store"), QVariant::fromValue(transcriptStore.get())}});
  transcriptStore.release()->setParent(window.get());
  window->setTitle(text(element->state().transcript.startDate));
  WindowClosing::tell(*window, [this, closing = window.get()] { windowWillClose(*closing); });
  // A window moves least when it has its place before it is seen.
  centre(*window);
  orderFront(*window);
  activateFrontWindow();
  return window;
}

void TranscriptsWindowsController::windowWillClose(QQuickWindow const& window) {
  std::vector<UUID> closing;
  for (auto const& [id, open] : windows) {
    if (open.get() == &window) closing.push_back(id);
  }
  for (auto const& id : closing) store->send(Action::closeTranscript{id});
}

}  // namespace vek
