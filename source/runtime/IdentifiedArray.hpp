// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "runtime/ThreadPool.hpp"

namespace vek {

/// The identifier of a record: its `id`, a field or a function.
template <class Element>
decltype(auto) identifier(Element const& element) {
  if constexpr (requires { element.id(); }) {
    return element.id();
  } else {
    return (element.id);
  }
}

/// An ordered list of records with unique identifiers, read by position and by identifier.
///
/// A value whose copies share what is equal: the elements are the leaves of a flat tree, chunks in
/// branches, of which only the chunk and the branch of a changed element are copied, beside an
/// index that is copied only when an element comes or goes. So a change does not cost the list's
/// length. A long list is taken down on the shared pool, with its elements.
template <class Element>
class IdentifiedArray {
  struct Entry;

 public:
  using ElementType = Element;
  using ID = std::remove_cvref_t<decltype(identifier(std::declval<Element const&>()))>;
  static constexpr std::size_t chunkSize = 32;
  static constexpr std::size_t branchSize = 16 * chunkSize;

  IdentifiedArray() = default;

  /// Throws std::invalid_argument when an identifier comes twice.
  explicit IdentifiedArray(std::vector<Element> elements) {
    auto index = std::make_shared<Index>();
    index->reserve(elements.size());
    for (auto& element : elements) {
      index->push_back({identifier(element), static_cast<std::uint32_t>(size_)});
      append(std::move(element));
    }
    std::sort(index->begin(), index->end(), byID);
    auto const twice = std::adjacent_find(
        index->begin(), index->end(), [](auto const& a, auto const& b) { return a.id == b.id; });
    if (twice != index->end()) throw std::invalid_argument("An identifier stands twice in a list.");
    index_ = std::move(index);
  }

  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] bool empty() const { return size_ == 0; }
  Element const& operator[](std::size_t position) const {
    auto const& branch = *(*spine_)[position / branchSize];
    return (*branch[position % branchSize / chunkSize])[position % chunkSize];
  }

  /// The element with this identifier, or null.
  Element const* find(ID const& id) const {
    auto const entry = lookup(id);
    return entry ? &(*this)[entry->position] : nullptr;
  }
  [[nodiscard]] bool contains(ID const& id) const { return lookup(id) != nullptr; }

  /// Changes the element in place; false when there is none. The change keeps the identifier.
  template <class Change>
  bool update(ID const& id, Change change) {
    auto const* entry = lookup(id);
    if (!entry) return false;
    change(mutableElement(entry->position));
    return true;
  }

  /// Replaces the element of the same identifier in its place, or appends.
  void set(Element element) {
    if (auto const* entry = lookup(identifier(element))) {
      mutableElement(entry->position) = std::move(element);
    } else {
      enter({identifier(element), static_cast<std::uint32_t>(size_)});
      append(std::move(element));
    }
  }

  /// False when there was none.
  bool remove(ID const& id) {
    auto const* entry = lookup(id);
    if (!entry) return false;
    std::vector<Element> rest;
    rest.reserve(size_ - 1);
    for (auto const& element : *this) {
      if (!(identifier(element) == id)) rest.push_back(element);
    }
    *this = IdentifiedArray(std::move(rest));
    return true;
  }

  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Element;
    using difference_type = std::ptrdiff_t;
    using pointer = Element const*;
    using reference = Element const&;

    Iterator() = default;
    Iterator(IdentifiedArray const* array, std::size_t position)
        : array_(array), position_(position) {}
    reference operator*() const { return (*array_)[position_]; }
    pointer operator->() const { return &**this; }
    Iterator& operator++() {
      ++position_;
      return *this;
    }
    Iterator operator++(int) { return std::exchange(*this, Iterator(array_, position_ + 1)); }
    bool operator==(Iterator const&) const = default;

   private:
    IdentifiedArray const* array_ = nullptr;
    std::size_t position_ = 0;
  };
  [[nodiscard]] Iterator begin() const { return {this, 0}; }
  [[nodiscard]] Iterator end() const { return {this, size_}; }

  /// The identifiers at one moment, cheap to take and to compare when nothing came or went.
  class IDs {
   public:
    bool operator==(IDs const& other) const {
      return index_ == other.index_ || entries() == other.entries();
    }
    [[nodiscard]] bool contains(ID const& id) const { return lookup(entries(), id) != nullptr; }
    template <class Visit>
    void forEach(Visit visit) const {
      for (auto const& entry : entries()) visit(entry.id);
    }

   private:
    friend class IdentifiedArray;
    explicit IDs(IdentifiedArray const& array) : index_(array.index_) {}
    [[nodiscard]] auto const& entries() const { return index_ ? *index_ : noEntries(); }
    std::shared_ptr<std::vector<Entry> const> index_;
  };
  [[nodiscard]] IDs ids() const { return IDs(*this); }

  /// Visits each position at which this list and `other` do not hold equal elements, those behind
  /// the end of the shorter one among them. What both share is passed over without a look inside.
  template <class Visit>
  void forEachDifference(IdentifiedArray const& other, Visit visit) const {
    auto const end = std::max(size_, other.size_);
    for (std::size_t start = 0; start < end; start += chunkSize) {
      auto const* mine = chunk(start);
      auto const* others = other.chunk(start);
      if (mine == others) continue;
      for (auto position = start; position < std::min(start + chunkSize, end); ++position) {
        bool const isInBoth = position < size_ && position < other.size_;
        if (!isInBoth || !((*this)[position] == other[position])) visit(position);
      }
    }
  }

  /// What is shared is equal without a look inside.
  bool operator==(IdentifiedArray const& other) const {
    return size_ == other.size_ && (size_ == 0 || isEqual(spine_, other.spine_));
  }

 private:
  struct Entry {
    ID id;
    std::uint32_t position;
    bool operator==(Entry const&) const = default;
  };
  using Chunk = std::vector<Element>;
  using Branch = std::vector<std::shared_ptr<Chunk>>;
  using Spine = std::vector<std::shared_ptr<Branch>>;
  using Index = std::vector<Entry>;

  /// The chunk that holds this position, or null behind the end.
  Chunk const* chunk(std::size_t position) const {
    if (position >= size_) return nullptr;
    return (*(*spine_)[position / branchSize])[position % branchSize / chunkSize].get();
  }

  static bool byID(Entry const& a, Entry const& b) { return a.id < b.id; }

  static Index const& noEntries() {
    static auto const& none = *new Index();
    return none;
  }

  static Entry const* lookup(Index const& index, ID const& id) {
    auto const found =
        std::lower_bound(index.begin(), index.end(), id,
                         [](Entry const& entry, ID const& key) { return entry.id < key; });
    return found != index.end() && found->id == id ? &*found : nullptr;
  }
  Entry const* lookup(ID const& id) const { return index_ ? lookup(*index_, id) : nullptr; }

  static bool isEqual(Element const& a, Element const& b) { return a == b; }
  template <class Part>
  static bool isEqual(std::shared_ptr<std::vector<Part>> const& a,
                      std::shared_ptr<std::vector<Part>> const& b) {
    return a == b || std::equal(a->begin(), a->end(), b->begin(), b->end(),
                                [](Part const& x, Part const& y) { return isEqual(x, y); });
  }

  /// What `shared` points to, copied first when others see it too.
  template <class T>
  static T& own(std::shared_ptr<T>& shared) {
    if (!shared) {
      shared = std::make_shared<T>();
    } else if (shared.use_count() > 1) {
      shared = std::make_shared<T>(*shared);
    }
    return *shared;
  }

  struct TakesDown {
    /// More branches than these would keep the main thread busy for too long.
    static constexpr auto branchesAtOnce = 2;

    void operator()(Spine* spine) const {
      std::unique_ptr<Spine> gone(spine);
      auto const isLast = [](auto const& branch) { return branch.use_count() == 1; };
      if (std::count_if(gone->begin(), gone->end(), isLast) > branchesAtOnce) {
        ThreadPool::shared().post([gone = std::move(gone)] {});
      }
    }
  };

  Spine& ownSpine() {
    if (!spine_ || spine_.use_count() > 1) {
      spine_ = {spine_ ? new Spine(*spine_) : new Spine(), TakesDown()};
    }
    return *spine_;
  }

  Element& mutableElement(std::size_t position) {
    auto& branch = own(ownSpine()[position / branchSize]);
    return own(branch[position % branchSize / chunkSize])[position % chunkSize];
  }

  void enter(Entry entry) {
    auto& index = own(index_);
    index.insert(std::lower_bound(index.begin(), index.end(), entry, byID), std::move(entry));
  }

  /// Puts the element behind the last; it does not enter it into the index.
  void append(Element element) {
    auto& spine = ownSpine();
    if (size_ % branchSize == 0) spine.push_back(std::make_shared<Branch>());
    auto& branch = own(spine.back());
    if (size_ % chunkSize == 0) branch.push_back(std::make_shared<Chunk>());
    own(branch.back()).push_back(std::move(element));
    ++size_;
  }

  std::size_t size_ = 0;
  std::shared_ptr<Spine> spine_;
  std::shared_ptr<Index> index_;
};

}  // namespace vek
