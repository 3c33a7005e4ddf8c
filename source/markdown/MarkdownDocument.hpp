// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "markdown/MarkdownContent.hpp"

struct cmark_node;

namespace vek {

/// A document of cmark-gfm, which parses and knows other ways to write a text down.
class MarkdownDocument {
 public:
  /// What cannot be read in reasonable time and room stays the text that it is.
  static MarkdownDocument parse(std::string_view text);

  /// Writes a tree back. What a node cannot hold by the rules of cmark-gfm is left out.
  explicit MarkdownDocument(MarkdownContent const& content);

  [[nodiscard]] MarkdownContent content() const;

  [[nodiscard]] std::string plainText() const;

 private:
  struct Free {
    void operator()(cmark_node* node) const;
  };

  explicit MarkdownDocument(cmark_node* root) : root_(root) {}

  std::unique_ptr<cmark_node, Free> root_;
};

}  // namespace vek
