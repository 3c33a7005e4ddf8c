// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

#include <cstddef>
#include <unordered_map>

#include "views/DocumentOutline.hpp"

namespace vek {

class MarkdownPage;

/// What a page tells those who do not see it, made when they first ask: an interface for each node
/// of the document's outline, which ends with the document.
class AccessibleDocument {
 public:
  /// From now on pages are read so.
  static void install();

  explicit AccessibleDocument(MarkdownPage& page);
  AccessibleDocument(AccessibleDocument const&) = delete;
  AccessibleDocument& operator=(AccessibleDocument const&) = delete;
  ~AccessibleDocument();

  [[nodiscard]] MarkdownPage& page() const { return page_; }
  [[nodiscard]] DocumentOutline::Node const& node(std::size_t index) const {
    return outline_.nodes()[index];
  }
  [[nodiscard]] QAccessibleInterface* interfaceOf(std::size_t index);
  /// The innermost one at a point of the screen, or null.
  [[nodiscard]] QAccessibleInterface* interfaceAt(QPoint point);

  /// A part of the document's text, with a break as a break.
  [[nodiscard]] QString text(qsizetype from, qsizetype to) const;
  /// Where it stands on the screen.
  [[nodiscard]] QRect rectOf(qsizetype from, qsizetype to) const;
  [[nodiscard]] qsizetype positionAt(QPoint point) const;

 private:
  MarkdownPage& page_;
  DocumentOutline outline_;
  std::unordered_map<std::size_t, QAccessible::Id> interfaces_;
};

}  // namespace vek
