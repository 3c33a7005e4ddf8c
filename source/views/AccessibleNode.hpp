// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

#include "views/AccessibleDocument.hpp"

namespace vek {

/// A block, a cell or a link of a document, for those who do not see it. Its text can be read by
/// letters, words and lines; a link can be pressed.
class AccessibleNode : public QAccessibleInterface,
                       public QAccessibleTextInterface,
                       public QAccessibleActionInterface {
 public:
  using Node = DocumentOutline::Node;

  AccessibleNode(AccessibleDocument& document, std::size_t index)
      : document_(document), index_(index) {}

  [[nodiscard]] int position() const { return static_cast<int>(node().position); }

  [[nodiscard]] bool isValid() const override { return true; }
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QWindow* window() const override;
  [[nodiscard]] QAccessibleInterface* parent() const override;
  [[nodiscard]] QAccessibleInterface* child(int index) const override;
  [[nodiscard]] int childCount() const override { return static_cast<int>(node().children.size()); }
  [[nodiscard]] int indexOfChild(QAccessibleInterface const* child) const override;
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
  [[nodiscard]] QString text(QAccessible::Text which) const override;
  void setText(QAccessible::Text /*which*/, QString const& /*text*/) override {}
  [[nodiscard]] QRect rect() const override;
  [[nodiscard]] QAccessible::Role role() const override;
  [[nodiscard]] QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
  [[nodiscard]] int selectionCount() const override;
  void addSelection(int startOffset, int endOffset) override;
  void removeSelection(int selectionIndex) override;
  void setSelection(int selectionIndex, int startOffset, int endOffset) override;
  [[nodiscard]] int cursorPosition() const override;
  void setCursorPosition(int position) override;
  [[nodiscard]] QString text(int startOffset, int endOffset) const override;
  [[nodiscard]] int characterCount() const override;
  [[nodiscard]] QRect characterRect(int offset) const override;
  [[nodiscard]] int offsetAtPoint(QPoint const& point) const override;
  void scrollToSubstring(int startIndex, int endIndex) override;
  QString attributes(int offset, int* startOffset, int* endOffset) const override;

  [[nodiscard]] QStringList actionNames() const override;
  void doAction(QString const& actionName) override;
  [[nodiscard]] QStringList keyBindingsForAction(QString const& /*name*/) const override {
    return {};
  }

 protected:
  [[nodiscard]] AccessibleDocument& document() const { return document_; }
  [[nodiscard]] Node const& node() const { return document_.node(index_); }

 private:
  [[nodiscard]] bool hasText() const;
  /// What is chosen of it, counted from its beginning.
  [[nodiscard]] std::pair<int, int> chosen() const;

  AccessibleDocument& document_;
  std::size_t index_;
};

/// Owned by who registers it.
[[nodiscard]] QAccessibleInterface* makeAccessibleNode(AccessibleDocument& document,
                                                       std::size_t index);

}  // namespace vek
