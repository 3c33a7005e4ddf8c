// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QString>

#include <vector>

#include "markdown/FontProperties.hpp"

namespace vek {

[[nodiscard]] QFont fontOf(FontProperties const& properties);

/// A part of a text that is drawn with one font.
struct FontRange {
  int start = 0;
  int length = 0;
  QFont font;
};

/// The fonts of a text, from its beginning to its end. Some variants are for digits or capitals
/// only.
[[nodiscard]] std::vector<FontRange> fontsOf(FontProperties const& properties, QString const& text);

}  // namespace vek
