// SPDX-License-Identifier: MIT
#include "views/AccessibleTable.hpp"

#include <algorithm>

namespace vek {

void* AccessibleTable::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this)
                                             : AccessibleNode::interface_cast(type);
}

QAccessibleInterface* AccessibleTable::cellAt(int row, int column) const {
  bool const isThere = row >= 0 && column >= 0 && column < columnCount();
  return isThere ? child(row * columnCount() + column) : nullptr;
}

QString AccessibleTable::columnDescription(int column) const {
  auto const* head = cellAt(0, column);
  return head ? head->text(QAccessible::Name) : QString();
}

int AccessibleTable::rowCount() const {
  return childCount() / std::max(1, columnCount());
}

QAccessible::Role AccessibleCell::role() const {
  return rowIndex() == 0 ? QAccessible::ColumnHeader : QAccessible::Cell;
}

void* AccessibleCell::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::TableCellInterface ? static_cast<QAccessibleTableCellInterface*>(this)
                                                 : AccessibleNode::interface_cast(type);
}

int AccessibleCell::columns() const {
  return std::max(1, static_cast<int>(document().node(node().parent).columns));
}

QList<QAccessibleInterface*> AccessibleCell::columnHeaderCells() const {
  return {table()->child(columnIndex())};
}

}  // namespace vek
