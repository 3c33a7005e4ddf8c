// SPDX-License-Identifier: MIT
#include "views/AccessibleDocument.hpp"

#include <QAccessibleObject>
#include <QQuickWindow>

#include <algorithm>
#include <memory>

#include "views/AccessibleNode.hpp"
#include "views/MarkdownPage.hpp"

namespace vek {

namespace {

/// The page itself, between the items around it and the nodes of its document.
class AccessiblePage : public QAccessibleObject {
 public:
  explicit AccessiblePage(MarkdownPage& page) : QAccessibleObject(&page) {}

  [[nodiscard]] QAccessibleInterface* parent() const override {
    for (auto* item = page().parentItem(); item; item = item->parentItem())
      if (auto* around = QAccessible::queryAccessibleInterface(item)) return around;
    return page().window() ? QAccessible::queryAccessibleInterface(page().window()) : nullptr;
  }
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    bool const isThere = index >= 0 && index < childCount();
    return isThere ? document().interfaceOf(children()[static_cast<std::size_t>(index)]) : nullptr;
  }
  [[nodiscard]] int childCount() const override { return static_cast<int>(children().size()); }
  [[nodiscard]] int indexOfChild(QAccessibleInterface const* child) const override {
    auto const* node = dynamic_cast<AccessibleNode const*>(child);
    return node ? node->position() : -1;
  }
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
    return document().interfaceAt({x, y});
  }
  [[nodiscard]] QAccessibleInterface* focusChild() const override {
    auto const* link = page().focusedLink().present();
    return link ? document().interfaceOf(link->node) : nullptr;
  }
  [[nodiscard]] QString text(QAccessible::Text text) const override {
    return text == QAccessible::Name ? page().title() : QString();
  }
  [[nodiscard]] QRect rect() const override {
    return QRectF(page().mapToGlobal({0, 0}), page().size()).toAlignedRect();
  }
  [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Document; }
  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state;
    state.readOnly = state.multiLine = state.selectableText = state.focusable = true;
    state.focused = page().hasActiveFocus() && !page().focusedLink().present();
    state.invisible = !page().isVisible();
    return state;
  }

 private:
  [[nodiscard]] MarkdownPage& page() const { return *static_cast<MarkdownPage*>(object()); }
  [[nodiscard]] AccessibleDocument& document() const { return page().accessibleDocument(); }
  [[nodiscard]] std::vector<std::size_t> const& children() const {
    return document().node(0).children;
  }
};

QAccessibleInterface* makePage(QString const& name, QObject* object) {
  if (name != QLatin1String(MarkdownPage::staticMetaObject.className())) return nullptr;
  return new AccessiblePage(*static_cast<MarkdownPage*>(object));
}

}  // namespace

void AccessibleDocument::install() {
  QAccessible::installFactory(makePage);
}

AccessibleDocument::AccessibleDocument(MarkdownPage& page) : page_(page), outline_(page.layout()) {}

AccessibleDocument::~AccessibleDocument() {
  for (auto const& [node, id] : interfaces_) QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* AccessibleDocument::interfaceOf(std::size_t index) {
  if (index == 0) return QAccessible::queryAccessibleInterface(&page_);
  auto& id = interfaces_[index];
  if (id == 0) id = QAccessible::registerAccessibleInterface(makeAccessibleNode(*this, index));
  return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* AccessibleDocument::interfaceAt(QPoint point) {
  auto const position = positionAt(point);
  std::size_t found = 0;
  auto const holds = [&](std::size_t index) {
    return node(index).from <= position && position <= node(index).to;
  };
  for (;;) {
    auto const& children = node(found).children;
    auto const child = std::ranges::find_if(children, holds);
    if (child == children.end()) return found == 0 ? nullptr : interfaceOf(found);
    found = *child;
  }
}

QString AccessibleDocument::text(qsizetype from, qsizetype to) const {
  return page_.layout().text().mid(from, to - from).replace(QChar::LineSeparator, u'\n');
}

QRect AccessibleDocument::rectOf(qsizetype from, qsizetype to) const {
  QRectF united;
  for (auto const& rect : page_.layout().rectsOf(from, to)) united |= rect;
  auto const origin = page_.mapToGlobal({0, -page_.scroll()});
  return united.translated(origin).toAlignedRect();
}

qsizetype AccessibleDocument::positionAt(QPoint point) const {
  return page_.layout().positionAt(page_.mapFromGlobal(point) + QPointF(0, page_.scroll()));
}

}  // namespace vek
