// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace vek {

/// A long text in state: immutable and shared, so that copies of state do not copy it.
class SharedText {
 public:
  SharedText() = default;
  SharedText(std::string text)
      : text_(text.empty() ? nullptr : std::make_shared<std::string const>(std::move(text))) {}
  SharedText(char const* text) : SharedText(std::string(text)) {}

  [[nodiscard]] std::string const& string() const {
    static auto const& none = *new std::string();
    return text_ ? *text_ : none;
  }
  operator std::string const&() const { return string(); }
  [[nodiscard]] bool empty() const { return !text_; }

  bool operator==(SharedText const& other) const {
    return text_ == other.text_ || string() == other.string();
  }

 private:
  std::shared_ptr<std::string const> text_;
};

}  // namespace vek
