// SPDX-License-Identifier: MIT
#include "markdown/TextStyle.hpp"

namespace vek {

namespace {

template <class Value>
void change(Value& field, std::optional<Value> const& to) {
  if (to) field = *to;
}

}  // namespace

TextAttributes TextStyle::appliedTo(TextAttributes attributes) const {
  change(attributes.font.family, family);
  change(attributes.font.familyVariant, familyVariant);
  change(attributes.font.capsVariant, capsVariant);
  change(attributes.font.digitVariant, digitVariant);
  change(attributes.font.style, style);
  change(attributes.font.weight, weight);
  change(attributes.foreground, foreground);
  change(attributes.isUnderlined, isUnderlined);
  change(attributes.isStruckThrough, isStruckThrough);
  if (width) attributes.font.width = width;
  if (background) attributes.background = background;
  if (size) attributes.font.resize(*size);
  return attributes;
}

}  // namespace vek
