// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "markdown/Children.hpp"
#include "runtime/Sum.hpp"

namespace vek {

struct InlineNode;

struct InlineNodeCases {
  struct text {
    std::string content;
    bool operator==(text const&) const = default;
  };
  struct softBreak {
    bool operator==(softBreak const&) const = default;
  };
  struct lineBreak {
    bool operator==(lineBreak const&) const = default;
  };
  struct code {
    std::string content;
    bool operator==(code const&) const = default;
  };
  struct html {
    std::string content;
    bool operator==(html const&) const = default;
  };
  struct emphasis {
    Children<InlineNode> children;
    bool operator==(emphasis const&) const = default;
  };
  struct strong {
    Children<InlineNode> children;
    bool operator==(strong const&) const = default;
  };
  struct strikethrough {
    Children<InlineNode> children;
    bool operator==(strikethrough const&) const = default;
  };
  struct link {
    std::string destination;
    Children<InlineNode> children;
    bool operator==(link const&) const = default;
  };
  struct image {
    std::string source;
    Children<InlineNode> children;
    bool operator==(image const&) const = default;
  };
};

/// What stands in a line of text.
struct InlineNode
    : InlineNodeCases,
      Sum<InlineNodeCases::text, InlineNodeCases::softBreak, InlineNodeCases::lineBreak,
          InlineNodeCases::code, InlineNodeCases::html, InlineNodeCases::emphasis,
          InlineNodeCases::strong, InlineNodeCases::strikethrough, InlineNodeCases::link,
          InlineNodeCases::image> {
  using Sum::Sum;
};

}  // namespace vek
