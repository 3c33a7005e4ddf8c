// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "markdown/FontSize.hpp"

namespace vek {

/// What a font is asked for by, in the order in which it narrows the choice.
struct FontProperties {
  enum class Design { standard, serif, rounded, monospaced };
  struct system {
    Design design = Design::standard;
    bool operator==(system const&) const = default;
  };
  struct custom {
    std::string name;
    bool operator==(custom const&) const = default;
  };
  using Family = std::variant<system, custom>;
  enum class FamilyVariant { normal, monospaced };
  enum class CapsVariant { normal, smallCaps, lowercaseSmallCaps, uppercaseSmallCaps };
  enum class DigitVariant { normal, monospaced };
  enum class Style { normal, italic };
  enum class Weight { regular = 400, medium = 500, semibold = 600, bold = 700 };
  enum class Width { condensed = 75, standard = 100, expanded = 125 };

  Family family = system{};
  FamilyVariant familyVariant = FamilyVariant::normal;
  CapsVariant capsVariant = CapsVariant::normal;
  DigitVariant digitVariant = DigitVariant::normal;
  Style style = Style::normal;
  Weight weight = Weight::regular;
  std::optional<Width> width;
  /// Of the root, in points.
  double size = 13;
  /// Of this text to the root.
  double scale = 1;

  /// A length in points, for text of this font.
  [[nodiscard]] double points(FontSize const& length) const;
  void resize(FontSize const& to);

  bool operator==(FontProperties const&) const = default;
};

}  // namespace vek
