// SPDX-License-Identifier: MIT
#include "Clients/LocaleKey.hpp"

#include "platform/Locale.hpp"

namespace vek {

LocaleKey::Value LocaleKey::liveValue() {
  return std::make_shared<Locale const>(Locale::current());
}

}  // namespace vek
