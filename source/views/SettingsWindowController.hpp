// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariantList>

#include <memory>
#include <vector>

#include "views/FrameAutosave.hpp"
#include "views/PaneHostingController.hpp"

namespace vek {

/// A window that shows one of several panes, chosen in its toolbar.
class SettingsWindowController : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made with its window")
  Q_PROPERTY(QVariantList items READ items CONSTANT)
  Q_PROPERTY(vek::PaneHostingController* selectedPane READ selectedPane NOTIFY selectedPaneChanged)
  /// No pane has been selected yet: the first selection is not animated.
  Q_PROPERTY(bool initialTabSelection READ isInitialTabSelection NOTIFY initialTabSelectionChanged)

 public:
  /// At least one pane, in toolbar order. The engine outlives this object.
  SettingsWindowController(QQmlEngine& engine, std::vector<Pane> panes);

  [[nodiscard]] QVariantList items() const;
  [[nodiscard]] PaneHostingController* selectedPane() const { return selectedPane_; }
  [[nodiscard]] bool isInitialTabSelection() const { return initialTabSelection; }
  [[nodiscard]] QQuickWindow& window() { return *window_; }

  /// Brings the window to the front. One that was off screen begins with this pane, or the first.
  void showWindow(QString const& identifier = {});

  /// A press on an item of the toolbar.
  Q_INVOKABLE void changeContentView(QString const& identifier);

  Q_SIGNAL void selectedPaneChanged();
  Q_SIGNAL void initialTabSelectionChanged();

 private:
  void orderFront();

  std::vector<std::unique_ptr<PaneHostingController>> items_;
  PaneHostingController* selectedPane_;
  bool initialTabSelection = true;
  std::unique_ptr<QQuickWindow> window_;
  /// From the first showing on.
  std::unique_ptr<FrameAutosave> frame_;
};

}  // namespace vek
