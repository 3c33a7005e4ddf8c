// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

namespace vek {

/// One of the views that a window with a toolbar can show.
struct Pane {
  /// Also that of its item in the toolbar.
  QString identifier;
  QString title;
  /// The name of a symbol.
  QString toolbarIcon;
  /// Empty where there is none.
  QString tooltip = {};
  /// The name of the view's file in the module, and what it shows.
  QString content;
  QVariantMap contentProperties = {};
};

}  // namespace vek
