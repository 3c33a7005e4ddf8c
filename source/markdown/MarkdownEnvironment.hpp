// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "markdown/CodeSyntaxHighlighter.hpp"
#include "markdown/RawImageData.hpp"
#include "markdown/SoftBreak.hpp"
#include "markdown/Theme.hpp"

namespace vek {

/// What a document is drawn with beside its content. Who wants another look starts from this one.
struct MarkdownEnvironment {
  Theme theme = Theme::standard();
  /// Images that are for the other one are left out.
  ColorScheme colorScheme = ColorScheme::light;
  SoftBreak::Mode softBreakMode = SoftBreak::Mode::space;
  CodeSyntaxHighlighter codeSyntaxHighlighter = plainTextHighlighter;
  /// How wide the label of a marker is, in points.
  std::function<double(Drawable const& marker)> markerWidth = [](Drawable const&) { return 0.0; };
};

}  // namespace vek
