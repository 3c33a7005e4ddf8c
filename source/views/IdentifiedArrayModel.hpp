// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <utility>
#include <vector>

#include "runtime/IdentifiedArray.hpp"

namespace vek {

/// A list of state for a view. A new value of the list becomes the rows that came, went and
/// changed, so that the view keeps what it has of all others. Roles are for those who derive.
template <class Element>
class IdentifiedArrayModel : public QAbstractListModel {
 public:
  using List = IdentifiedArray<Element>;

  [[nodiscard]] int rowCount(QModelIndex const& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(list_.size());
  }

  void setList(List list) {
    if (!(list_.ids() == list.ids())) exchangeRows(list);
    auto const previous = std::exchange(list_, std::move(list));
    list_.forEachDifference(previous, [this](std::size_t position) {
      auto const changed = index(static_cast<int>(position));
      Q_EMIT this->dataChanged(changed, changed);
    });
  }

 protected:
  [[nodiscard]] Element const& element(int row) const {
    return list_[static_cast<std::size_t>(row)];
  }

 private:
  using Position = typename std::vector<Element>::difference_type;

  /// Takes over the identifiers: those between the same beginning and the same end of both lists
  /// go, and the new ones come in their place.
  void exchangeRows(List const& list) {
    auto const isSame = [](Element const& a, Element const& b) {
      return identifier(a) == identifier(b);
    };
    std::vector<Element> rows(list_.begin(), list_.end());
    std::vector<Element> const wanted(list.begin(), list.end());
    auto const first =
        std::mismatch(rows.begin(), rows.end(), wanted.begin(), wanted.end(), isSame);
    auto const last =
        std::mismatch(rows.rbegin(), std::make_reverse_iterator(first.first), wanted.rbegin(),
                      std::make_reverse_iterator(first.second), isSame);
    auto const start = static_cast<int>(first.first - rows.begin());
    if (auto const count = static_cast<int>(last.first.base() - first.first); count > 0) {
      beginRemoveRows({}, start, start + count - 1);
      rows.erase(first.first, last.first.base());
      list_ = List(rows);
      endRemoveRows();
    }
    if (auto const count = static_cast<int>(last.second.base() - first.second); count > 0) {
      beginInsertRows({}, start, start + count - 1);
      rows.insert(rows.begin() + start, first.second, last.second.base());
      list_ = List(std::move(rows));
      endInsertRows();
    }
  }

  List list_;
};

}  // namespace vek
