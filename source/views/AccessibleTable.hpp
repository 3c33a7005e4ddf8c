// SPDX-License-Identifier: MIT
#pragma once

#include "views/AccessibleNode.hpp"

namespace vek {

/// A table, which can be walked by rows and columns. Nothing of it is ever chosen as such.
class AccessibleTable : public AccessibleNode, public QAccessibleTableInterface {
 public:
  using AccessibleNode::AccessibleNode;

  void* interface_cast(QAccessible::InterfaceType type) override;

  [[nodiscard]] QAccessibleInterface* caption() const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* summary() const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* cellAt(int row, int column) const override;
  [[nodiscard]] int selectedCellCount() const override { return 0; }
  [[nodiscard]] QList<QAccessibleInterface*> selectedCells() const override { return {}; }
  /// What stands at its head.
  [[nodiscard]] QString columnDescription(int column) const override;
  [[nodiscard]] QString rowDescription(int /*row*/) const override { return {}; }
  [[nodiscard]] int selectedColumnCount() const override { return 0; }
  [[nodiscard]] int selectedRowCount() const override { return 0; }
  [[nodiscard]] int columnCount() const override { return static_cast<int>(node().columns); }
  [[nodiscard]] int rowCount() const override;
  [[nodiscard]] QList<int> selectedColumns() const override { return {}; }
  [[nodiscard]] QList<int> selectedRows() const override { return {}; }
  [[nodiscard]] bool isColumnSelected(int /*column*/) const override { return false; }
  [[nodiscard]] bool isRowSelected(int /*row*/) const override { return false; }
  bool selectRow(int /*row*/) override { return false; }
  bool selectColumn(int /*column*/) override { return false; }
  bool unselectRow(int /*row*/) override { return false; }
  bool unselectColumn(int /*column*/) override { return false; }
  void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override {}
};

/// A cell, which knows what stands at the head of its column.
class AccessibleCell : public AccessibleNode, public QAccessibleTableCellInterface {
 public:
  using AccessibleNode::AccessibleNode;

  [[nodiscard]] QAccessible::Role role() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  [[nodiscard]] bool isSelected() const override { return false; }
  [[nodiscard]] QList<QAccessibleInterface*> columnHeaderCells() const override;
  [[nodiscard]] QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  [[nodiscard]] int columnIndex() const override { return position() % columns(); }
  [[nodiscard]] int rowIndex() const override { return position() / columns(); }
  [[nodiscard]] int columnExtent() const override { return 1; }
  [[nodiscard]] int rowExtent() const override { return 1; }
  [[nodiscard]] QAccessibleInterface* table() const override { return parent(); }

 private:
  [[nodiscard]] int columns() const;
};

}  // namespace vek
