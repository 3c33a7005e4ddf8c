// SPDX-License-Identifier: MIT
#include "views/AccessibleNode.hpp"

#include <QCoreApplication>
#include <QQuickWindow>

#include <algorithm>

#include "views/AccessibleTable.hpp"
#include "views/MarkdownPage.hpp"

namespace vek {

using Kind = DocumentOutline::Node::Kind;

namespace {

QAccessible::Role roleOf(Kind kind) {
  switch (kind) {
    case Kind::document:
      return QAccessible::Document;
    case Kind::quote:
      return QAccessible::Section;
    case Kind::list:
      return QAccessible::List;
    case Kind::item:
      return QAccessible::ListItem;
    case Kind::heading:
      return QAccessible::Heading;
    case Kind::paragraph:
    case Kind::code:
      return QAccessible::Paragraph;
    case Kind::table:
      return QAccessible::Table;
    case Kind::cell:
      return QAccessible::Cell;
    case Kind::image:
      return QAccessible::Graphic;
    case Kind::link:
      return QAccessible::Link;
    case Kind::rule:
      return QAccessible::Separator;
  }
  return QAccessible::Paragraph;
}

QString described(DocumentOutline::Node const& node) {
  auto const told = [](char const* text) {
    return QCoreApplication::translate("AccessibleNode", text);
  };
  if (node.kind == Kind::heading) return told("Level %1").arg(node.level);
  if (node.kind == Kind::quote) return told("Quote");
  if (node.kind == Kind::code) return told("Code");
  if (node.destination) return QString::fromStdString(node.destination->string());
  return {};
}

}  // namespace

QAccessibleInterface* makeAccessibleNode(AccessibleDocument& document, std::size_t index) {
  auto const kind = document.node(index).kind;
  if (kind == Kind::table) return new AccessibleTable(document, index);
  if (kind == Kind::cell) return new AccessibleCell(document, index);
  return new AccessibleNode(document, index);
}

bool AccessibleNode::hasText() const {
  constexpr std::array kinds = {Kind::heading, Kind::paragraph, Kind::code,
                                Kind::cell,    Kind::image,     Kind::link};
  return std::ranges::find(kinds, node().kind) != kinds.end();
}

QWindow* AccessibleNode::window() const {
  return document_.page().window();
}

QAccessibleInterface* AccessibleNode::parent() const {
  return document_.interfaceOf(node().parent);
}

QAccessibleInterface* AccessibleNode::child(int index) const {
  bool const isThere = index >= 0 && index < childCount();
  return isThere ? document_.interfaceOf(node().children[static_cast<std::size_t>(index)])
                 : nullptr;
}

int AccessibleNode::indexOfChild(QAccessibleInterface const* child) const {
  auto const* node = dynamic_cast<AccessibleNode const*>(child);
  return node ? node->position() : -1;
}

QAccessibleInterface* AccessibleNode::childAt(int x, int y) const {
  for (int i = 0; i < childCount(); ++i)
    if (auto* found = child(i); found->rect().contains(x, y)) return found;
  return nullptr;
}

QString AccessibleNode::text(QAccessible::Text which) const {
  if (which == QAccessible::Description) return described(node());
  if (which != QAccessible::Name) return {};
  return hasText() ? document_.text(node().from, node().to) : node().marker;
}

QRect AccessibleNode::rect() const {
  return document_.rectOf(node().from, node().to);
}

QAccessible::Role AccessibleNode::role() const {
  return roleOf(node().kind);
}

QAccessible::State AccessibleNode::state() const {
  QAccessible::State state;
  state.readOnly = true;
  state.selectableText = state.multiLine = hasText();
  state.linked = node().destination.has_value();
  auto const* focused = document_.page().focusedLink().present();
  state.focusable = state.linked;
  state.focused = focused && focused->node == index_;
  state.checkable = node().isDone.has_value();
  state.checked = node().isDone.value_or(false);
  state.invisible = !document_.page().isVisible();
  return state;
}

void* AccessibleNode::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface && hasText())
    return static_cast<QAccessibleTextInterface*>(this);
  if (type == QAccessible::ActionInterface && node().destination)
    return static_cast<QAccessibleActionInterface*>(this);
  return nullptr;
}

std::pair<int, int> AccessibleNode::chosen() const {
  auto const [from, to] = document_.page().selection();
  auto const within = [this](qsizetype position) {
    return static_cast<int>(std::clamp(position, node().from, node().to) - node().from);
  };
  return {within(from), within(to)};
}

void AccessibleNode::selection(int /*selectionIndex*/, int* startOffset, int* endOffset) const {
  std::tie(*startOffset, *endOffset) = chosen();
}

int AccessibleNode::selectionCount() const {
  auto const [from, to] = chosen();
  return from < to ? 1 : 0;
}

void AccessibleNode::addSelection(int startOffset, int endOffset) {
  document_.page().setSelection(node().from + startOffset, node().from + endOffset);
}

void AccessibleNode::removeSelection(int /*selectionIndex*/) {
  document_.page().deselect();
}

void AccessibleNode::setSelection(int /*selectionIndex*/, int startOffset, int endOffset) {
  addSelection(startOffset, endOffset);
}

int AccessibleNode::cursorPosition() const {
  return chosen().second;
}

void AccessibleNode::setCursorPosition(int position) {
  addSelection(position, position);
}

QString AccessibleNode::text(int startOffset, int endOffset) const {
  auto const end = endOffset < 0 ? node().to : std::min(node().from + endOffset, node().to);
  return document_.text(node().from + std::max(0, startOffset), end);
}

int AccessibleNode::characterCount() const {
  return static_cast<int>(node().to - node().from);
}

QRect AccessibleNode::characterRect(int offset) const {
  return document_.rectOf(node().from + offset, node().from + offset + 1);
}

int AccessibleNode::offsetAtPoint(QPoint const& point) const {
  auto const position = document_.positionAt(point);
  bool const isHere = node().from <= position && position <= node().to;
  return isHere ? static_cast<int>(position - node().from) : -1;
}

void AccessibleNode::scrollToSubstring(int startIndex, int endIndex) {
  document_.page().reveal(node().from + startIndex, node().from + endIndex);
}

QString AccessibleNode::attributes(int /*offset*/, int* startOffset, int* endOffset) const {
  *startOffset = 0;
  *endOffset = characterCount();
  return {};
}

QStringList AccessibleNode::actionNames() const {
  return node().destination ? QStringList(pressAction()) : QStringList();
}

void AccessibleNode::doAction(QString const& actionName) {
  if (actionName == pressAction() && node().destination)
    document_.page().follow(node().destination->string());
}

}  // namespace vek
