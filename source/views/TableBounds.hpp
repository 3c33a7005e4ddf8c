// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>

#include <vector>

namespace vek {

/// Where the parts of a table came to stand, once its cells were measured.
struct TableBounds {
  struct Span {
    qreal position = 0;
    qreal size = 0;
  };

  QRectF bounds;
  std::vector<Span> rows;
  std::vector<Span> columns;
};

}  // namespace vek
