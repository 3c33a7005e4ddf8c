// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "markdown/TextAttributes.hpp"

namespace vek {

/// What changes in a text; all else stays as in the text around it.
struct TextStyle {
  std::optional<FontProperties::Family> family = {};
  std::optional<FontProperties::FamilyVariant> familyVariant = {};
  std::optional<FontProperties::CapsVariant> capsVariant = {};
  std::optional<FontProperties::DigitVariant> digitVariant = {};
  std::optional<FontProperties::Style> style = {};
  std::optional<FontProperties::Weight> weight = {};
  std::optional<FontProperties::Width> width = {};
  std::optional<FontSize> size = {};
  std::optional<ThemeColor> foreground = {};
  std::optional<ThemeColor> background = {};
  std::optional<bool> isUnderlined = {};
  std::optional<bool> isStruckThrough = {};

  [[nodiscard]] TextAttributes appliedTo(TextAttributes attributes) const;

  bool operator==(TextStyle const&) const = default;
};

}  // namespace vek
