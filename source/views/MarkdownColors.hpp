// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QVariantMap>

#include "markdown/ThemeColor.hpp"

namespace vek {

/// The colours of a document in one scheme.
struct MarkdownColors {
  QColor primary, secondary, link, code, ground, border, quoteBar, done;
  QColor selection, found, foundNow;

  /// By the names above.
  static MarkdownColors from(QVariantMap const& colors);

  [[nodiscard]] QColor of(ThemeColor color) const;
};

}  // namespace vek
