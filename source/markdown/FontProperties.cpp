// SPDX-License-Identifier: MIT
#include "markdown/FontProperties.hpp"

namespace vek {

double FontProperties::points(FontSize const& length) const {
  if (auto const* absolute = std::get_if<double>(&length)) return *absolute;
  auto const& relative = std::get<RelativeSize>(length);
  return relative.value * size * (relative.unit == RelativeSize::Unit::em ? scale : 1);
}

void FontProperties::resize(FontSize const& to) {
  if (auto const* absolute = std::get_if<double>(&to)) {
    size = *absolute;
    scale = 1;
  } else {
    scale = points(to) / size;
  }
}

}  // namespace vek
