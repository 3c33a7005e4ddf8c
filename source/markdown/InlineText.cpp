// SPDX-License-Identifier: MIT
#include "markdown/InlineText.hpp"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string_view>

#include "runtime/Match.hpp"

namespace vek {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";

struct Tag {
  std::size_t start = 0;
  std::size_t end = 0;
  std::string_view name = {};

  [[nodiscard]] bool isBreak() const {
    return name.size() == 2 && std::tolower(name[0]) == 'b' && std::tolower(name[1]) == 'r';
  }
};

/// The first tag from a place on, by "<\/?([a-zA-Z0-9]+)[^>]*>".
std::optional<Tag> nextTag(std::string_view html, std::size_t from) {
  auto const isName = [](unsigned char c) { return std::isalnum(c) != 0; };
  for (auto start = html.find('<', from); start != html.npos; start = html.find('<', start + 1)) {
    auto const rest = html.substr(start + (html.substr(start).starts_with("</") ? 2 : 1));
    std::string_view const name(rest.begin(), std::ranges::find_if_not(rest, isName));
    if (name.empty()) continue;
    auto const end = html.find('>', start);
    if (end == html.npos) return std::nullopt;
    return Tag{start, end + 1, name};
  }
  return std::nullopt;
}

/// Raw HTML as it stands, but for the line breaks in it.
std::string shownHTML(std::string_view html) {
  std::string shown;
  std::size_t at = 0;
  while (auto const tag = nextTag(html, at)) {
    shown += html.substr(at, tag->isBreak() ? tag->start - at : tag->end - at);
    at = tag->end;
    if (!tag->isBreak()) continue;
    shown += '\n';
    // The end of a line behind a break is that same break.
    if (html.substr(at).starts_with('\n')) ++at;
  }
  shown += html.substr(at);
  return shown;
}

/// Walks nested nodes with a stack of its own, since they nest as deep as the text is long.
class RunMaker {
 public:
  RunMaker(Theme const& theme, SoftBreak::Mode softBreak) : theme_(theme), softBreak_(softBreak) {}

  std::vector<InlineRun> make(Children<InlineNode> const& content,
                              TextAttributes const& attributes) {
    open(content, attributes, std::nullopt);
    while (!open_.empty()) {
      auto& level = open_.back();
      if (level.next == level.children->end()) {
        open_.pop_back();
      } else {
        add(*level.next++, Level(level));
      }
    }
    return std::move(runs_);
  }

 private:
  struct Level {
    Children<InlineNode> const* children = nullptr;
    InlineNode const* next = nullptr;
    TextAttributes attributes = {};
    std::optional<SharedText> destination = {};
  };

  void open(Children<InlineNode> const& children, TextAttributes const& attributes,
            std::optional<SharedText> const& destination) {
    open_.push_back({&children, children.begin(), attributes, destination});
  }

  void add(InlineNode const& node, Level const& in) {
    match(
        node, [&](InlineNode::text const& text) { addText(text.content, in); },
        // The end of a line behind a break is that same break.
        [&](InlineNode::softBreak) {
          addText(softBreak_ == SoftBreak::Mode::space ? " " : "\n", in);
        },
        [&](InlineNode::lineBreak) { append("\n", in.attributes, in); },
        [&](InlineNode::code const& code) {
          append(code.content, theme_.code.appliedTo(in.attributes), in);
        },
        [&](InlineNode::html const& html) { append(shownHTML(html.content), in.attributes, in); },
        [&](InlineNode::emphasis const& node) { style(theme_.emphasis, node.children, in); },
        [&](InlineNode::strong const& node) { style(theme_.strong, node.children, in); },
        [&](InlineNode::strikethrough const& node) {
          style(theme_.strikethrough, node.children, in);
        },
        [&](InlineNode::link const& link) {
          open(link.children, theme_.link.appliedTo(in.attributes), link.destination);
        },
        [&](InlineNode::image const& image) { addImage(image, in); });
  }

  void style(TextStyle const& style, Children<InlineNode> const& children, Level const& in) {
    open(children, style.appliedTo(in.attributes), in.destination);
  }

  void addText(std::string_view text, Level const& in) {
    bool const isFreshLine = runs_.empty() || runs_.back().text.ends_with('\n');
    if (isFreshLine) text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    append(text, in.attributes, in);
  }

  void append(std::string_view text, TextAttributes const& attributes, Level const& in) {
    if (text.empty()) return;
    bool const joins = !runs_.empty() && !runs_.back().image &&
                       runs_.back().attributes == attributes &&
                       runs_.back().destination == in.destination;
    if (joins) {
      runs_.back().text += text;
    } else {
      runs_.push_back({std::string(text), attributes, in.destination});
    }
  }

  void addImage(InlineNode::image const& image, Level const& in) {
    auto alt = plainText(image.children);
    runs_.push_back(
        {alt, in.attributes, in.destination, RawImageData{image.source, alt, in.destination}});
  }

  Theme const& theme_;
  SoftBreak::Mode softBreak_;
  std::vector<Level> open_;
  std::vector<InlineRun> runs_;
};

bool isBlank(InlineNode const& node) {
  auto const* text = std::get_if<InlineNode::text>(&node.value);
  return text && text->content.find_first_not_of(blanks) == std::string::npos;
}

/// Adds the images of nodes that hold nothing else; false when they do hold something else.
bool addImages(ImageFlow& flow, Children<InlineNode> const& content,
               std::optional<SharedText> const& destination) {
  return std::ranges::all_of(content, [&](InlineNode const& node) {
    if (auto const* image = std::get_if<InlineNode::image>(&node.value)) {
      flow.emplace_back(RawImageData{image->source, plainText(image->children), destination});
      return true;
    }
    if (std::holds_alternative<InlineNode::lineBreak>(node.value)) {
      flow.emplace_back(InlineNode::lineBreak{});
      return true;
    }
    // Links hold no links, so this goes one step down at most.
    auto const* link = std::get_if<InlineNode::link>(&node.value);
    if (link && !destination && !link->children.empty())
      return addImages(flow, link->children, link->destination);
    return isBlank(node) || std::holds_alternative<InlineNode::softBreak>(node.value);
  });
}

}  // namespace

std::vector<InlineRun> inlineRuns(Children<InlineNode> const& content, Theme const& theme,
                                  TextAttributes const& attributes, SoftBreak::Mode softBreak) {
  return RunMaker(theme, softBreak).make(content, attributes);
}

std::string plainText(Children<InlineNode> const& content) {
  std::string text;
  std::vector<std::pair<InlineNode const*, InlineNode const*>> open = {
      {content.begin(), content.end()}};
  auto const enter = [&](Children<InlineNode> const& children) {
    open.emplace_back(children.begin(), children.end());
  };
  while (!open.empty()) {
    auto& [next, end] = open.back();
    if (next == end) {
      open.pop_back();
      continue;
    }
    match(
        *next++, [&](InlineNode::text const& node) { text += node.content; },
        [&](InlineNode::softBreak) { text += ' '; }, [&](InlineNode::lineBreak) { text += '\n'; },
        [&](InlineNode::code const& node) { text += node.content; },
        [&](InlineNode::html const& node) { text += node.content; },
        [&](auto const& node) { enter(node.children); });
  }
  return text;
}

std::optional<ImageFlow> imageFlow(Children<InlineNode> const& content) {
  ImageFlow flow;
  bool const hasOnlyImages = addImages(flow, content, std::nullopt);
  bool const hasImage = std::ranges::any_of(
      flow, [](auto const& item) { return std::holds_alternative<RawImageData>(item); });
  if (!hasOnlyImages || !hasImage) return std::nullopt;
  return flow;
}

}  // namespace vek
