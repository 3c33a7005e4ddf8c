// SPDX-License-Identifier: MIT
#include "markdown/MarkdownContent.hpp"

#include "markdown/MarkdownDocument.hpp"

namespace vek {

MarkdownContent::MarkdownContent(std::string_view text)
    : MarkdownContent(MarkdownDocument::parse(text).content()) {}

}  // namespace vek
