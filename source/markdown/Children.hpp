// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace vek {

namespace detail {

/// Two lists of children and how to tell whether they are equal.
struct Comparison {
  void const* one;
  void const* other;
  bool (*areEqual)(void const* one, void const* other);
};

/// Ends what it is given after all that the calling thread is ending already.
void releaseInTurn(std::shared_ptr<void const> last);

/// Inside a comparison on the same thread: true, and the outermost one decides it in its turn.
bool compareInTurn(Comparison comparison);

}  // namespace detail

/// The children of a node: an immutable list whose copies share it. A text can nest nodes as deep
/// as it is long, so neither the end of a tree nor a comparison of two of them recurses.
template <class Node>
class Children {
 public:
  Children() = default;
  Children(std::vector<Node> nodes)
      : nodes_(nodes.empty() ? nullptr
                             : std::make_shared<std::vector<Node> const>(std::move(nodes))) {}
  Children(std::initializer_list<Node> nodes) : Children(std::vector<Node>(nodes)) {}

  Children(Children const&) = default;
  Children(Children&&) noexcept = default;
  Children& operator=(Children other) noexcept {
    nodes_.swap(other.nodes_);
    return *this;
  }
  ~Children() {
    if (nodes_.use_count() == 1) detail::releaseInTurn(std::move(nodes_));
  }

  [[nodiscard]] Node const* begin() const { return nodes_ ? nodes_->data() : nullptr; }
  [[nodiscard]] Node const* end() const { return begin() + size(); }
  [[nodiscard]] std::size_t size() const { return nodes_ ? nodes_->size() : 0; }
  [[nodiscard]] bool empty() const { return !nodes_; }
  [[nodiscard]] Node const& operator[](std::size_t position) const { return (*nodes_)[position]; }

  friend bool operator==(Children const& one, Children const& other) {
    if (one.nodes_ == other.nodes_) return true;
    if (one.size() != other.size()) return false;
    return detail::compareInTurn(
        {one.nodes_.get(), other.nodes_.get(), [](void const* a, void const* b) {
           return *static_cast<std::vector<Node> const*>(a) ==
                  *static_cast<std::vector<Node> const*>(b);
         }});
  }

 private:
  std::shared_ptr<std::vector<Node> const> nodes_;
};

}  // namespace vek
