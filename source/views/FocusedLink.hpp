// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <cstddef>
#include <optional>
#include <vector>

#include "views/DocumentLayout.hpp"

namespace vek {

/// The link of a document that the keyboard has come to, among those that lead somewhere.
class FocusedLink {
 public:
  struct Link {
    /// Its text in that of the document.
    qsizetype from = 0;
    qsizetype to = 0;
    QUrl url;
    /// Among the nodes of the outline.
    std::size_t node = 0;
  };
  enum class Step { next, previous };

  /// Goes on from the present link, or comes from outside. Beyond the last one there is none.
  void move(DocumentLayout const& document, QUrl const& base, Step step);
  void leave() { present_.reset(); }
  /// Another document is shown, or its links lead elsewhere.
  void forget();

  [[nodiscard]] Link const* present() const { return present_ ? &(*links_)[*present_] : nullptr; }

 private:
  /// Found when the keyboard first asks for them.
  std::optional<std::vector<Link>> links_;
  std::optional<std::size_t> present_;
};

}  // namespace vek
