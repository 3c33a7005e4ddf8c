// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>

namespace vek {

/// What blends the windows of a desktop with what is below them. On X11 it may come and go at any
/// time; other desktops blend by themselves.
class Compositor : public QAbstractNativeEventFilter {
 public:
  /// Calls back at each change of `isPresent`. There is an application as long as this object
  /// lives.
  explicit Compositor(std::function<void()> changed);
  Compositor(Compositor const&) = delete;
  Compositor& operator=(Compositor const&) = delete;
  ~Compositor() override;

  [[nodiscard]] bool isPresent() const { return isPresent_; }

  bool nativeEventFilter(QByteArray const& type, void* message, qintptr* result) override;

 private:
  void setPresent(bool isPresent);

  std::function<void()> changed_;
  bool isPresent_ = true;
  /// Who owns this selection is the compositor of the first screen.
  std::uint32_t selection_ = 0;
  std::uint8_t ownerChange_ = 0;
};

}  // namespace vek
