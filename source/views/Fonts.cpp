// SPDX-License-Identifier: MIT
#include "views/Fonts.hpp"

#include <QStringList>

#include <algorithm>

namespace vek {

namespace {

using Design = FontProperties::Design;
using CapsVariant = FontProperties::CapsVariant;

/// From this scale on letters stand closer.
constexpr double displayScale = 1.4;
constexpr qreal displaySpacing = 98.5;
/// A small capital to a capital letter.
constexpr double smallCapital = 0.8;

QString const emoji = QStringLiteral("Noto Color Emoji");
/// Its digits are of one width.
QString const digits = QStringLiteral("Noto Sans");

QStringList familiesOf(Design design) {
  switch (design) {
    case Design::serif:
      return {QStringLiteral("Noto Serif"), QStringLiteral("DejaVu Serif"), QStringLiteral("serif"),
              emoji};
    case Design::rounded:
      return {QStringLiteral("Nunito"), QStringLiteral("Varela Round"), digits, emoji};
    case Design::monospaced:
      return {QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Noto Sans Mono"),
              QStringLiteral("monospace"), emoji};
    case Design::standard:
      break;
  }
  return {};
}

/// Nothing for the font of the program.
QStringList familiesOf(FontProperties const& properties) {
  bool const isMonospaced = properties.familyVariant == FontProperties::FamilyVariant::monospaced;
  auto const* custom = std::get_if<FontProperties::custom>(&properties.family);
  if (!custom) {
    return familiesOf(isMonospaced ? Design::monospaced
                                   : std::get<FontProperties::system>(properties.family).design);
  }
  auto const name = QString::fromStdString(custom->name);
  return isMonospaced ? QStringList(name + QStringLiteral(" Mono")) + familiesOf(Design::monospaced)
                      : QStringList(name);
}

QFont::Capitalization capitalizationOf(CapsVariant variant) {
  return variant == CapsVariant::smallCaps            ? QFont::AllUppercase
         : variant == CapsVariant::lowercaseSmallCaps ? QFont::SmallCaps
                                                      : QFont::MixedCase;
}

void resize(QFont& font, double pixels) {
  font.setPixelSize(std::max(1, qRound(pixels)));
}

}  // namespace

QFont fontOf(FontProperties const& properties) {
  QFont font;
  if (auto const families = familiesOf(properties); !families.isEmpty()) font.setFamilies(families);
  auto const size = properties.size * properties.scale;
  resize(font, properties.capsVariant == CapsVariant::smallCaps ? size * smallCapital : size);
  font.setWeight(static_cast<QFont::Weight>(properties.weight));
  font.setItalic(properties.style == FontProperties::Style::italic);
  if (properties.width) font.setStretch(static_cast<int>(*properties.width));
  font.setCapitalization(capitalizationOf(properties.capsVariant));
  if (properties.scale >= displayScale)
    font.setLetterSpacing(QFont::PercentageSpacing, displaySpacing);
  return font;
}

std::vector<FontRange> fontsOf(FontProperties const& properties, QString const& text) {
  auto const font = fontOf(properties);
  bool const marksDigits = properties.digitVariant == FontProperties::DigitVariant::monospaced;
  bool const marksCapitals = properties.capsVariant == CapsVariant::uppercaseSmallCaps;
  auto const length = static_cast<int>(text.size());
  if (!marksDigits && !marksCapitals) return {{0, length, font}};

  auto const kindOf = [&](QChar letter) {
    return marksDigits && letter.isDigit() ? 1 : marksCapitals && letter.isUpper() ? 2 : 0;
  };
  std::vector<FontRange> ranges;
  for (int start = 0, end = 0; start < length; start = end) {
    auto const kind = kindOf(text[start]);
    while (end < length && kindOf(text[end]) == kind) ++end;
    auto& range = ranges.emplace_back(FontRange{start, end - start, font});
    if (kind == 1) range.font.setFamilies(QStringList(digits) + font.families());
    if (kind == 2) resize(range.font, properties.size * properties.scale * smallCapital);
  }
  return ranges;
}

}  // namespace vek
