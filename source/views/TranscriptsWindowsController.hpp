// SPDX-License-Identifier: MIT
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>

#include <map>
#include <memory>
#include <vector>

#include "features/TranscriptsListFeature.hpp"
#include "runtime/Store.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// Keeps one window for each transcript that is open.
class TranscriptsWindowsController {
 public:
  using ListStore = Store<TranscriptsListFeature::State, TranscriptsListFeature::Action>;

  /// Follows the opened transcripts from now on. The engine outlives this object.
  TranscriptsWindowsController(QQmlEngine& engine, ListStore::Shared store);

  /// Tells the store that the transcript of this window is closed.
  void windowWillClose(QQuickWindow const& window);

  using Windows = std::map<UUID, std::unique_ptr<QQuickWindow>>;
  [[nodiscard]] Windows const& openWindows() const { return windows; }

 private:
  using Opened = IdentifiedArray<TranscriptFeature::State>;

  void openedTranscriptsChanged(Opened const& opened);
  [[nodiscard]] std::unique_ptr<QQuickWindow> makeTranscriptWindow(UUID const& id);

  QQmlEngine& engine_;
  ListStore::Shared store;
  Windows windows;
  std::vector<Subscription> cancellables;
};

}  // namespace vek
