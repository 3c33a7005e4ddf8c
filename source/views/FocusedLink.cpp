// SPDX-License-Identifier: MIT
#include "views/FocusedLink.hpp"

#include <utility>

#include "views/DocumentOutline.hpp"
#include "views/LinkPolicy.hpp"

namespace vek {

namespace {

std::vector<FocusedLink::Link> linksOf(DocumentLayout const& document, QUrl const& base) {
  std::vector<FocusedLink::Link> links;
  DocumentOutline const outline(document);
  for (std::size_t i = 0; i < outline.nodes().size(); ++i) {
    auto const& node = outline.nodes()[i];
    if (!node.destination) continue;
    auto url = allowedLink(base, QString::fromStdString(node.destination->string()));
    if (url.isValid()) links.push_back({node.from, node.to, std::move(url), i});
  }
  return links;
}

}  // namespace

void FocusedLink::move(DocumentLayout const& document, QUrl const& base, Step step) {
  if (!links_) links_ = linksOf(document, base);
  auto const count = links_->size();
  // Back from the first one is beyond all, by the rules of unsigned numbers.
  auto const next =
      step == Step::next ? (present_ ? *present_ + 1 : 0) : present_.value_or(count) - 1;
  present_ = next < count ? std::optional(next) : std::nullopt;
}

void FocusedLink::forget() {
  leave();
  links_.reset();
}

}  // namespace vek
