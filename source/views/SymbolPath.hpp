// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QString>

namespace vek {

/// The outline of a symbol: all paths of an SVG file, which may consist of lines, curves
/// and arcs of circles. Read so, a start needs none of the toolkit's readers of pictures.
[[nodiscard]] QPainterPath symbolPath(QString const& file);

}  // namespace vek
