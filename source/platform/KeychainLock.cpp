// SPDX-License-Identifier: MIT
#include "platform/KeychainLock.hpp"

#include <string>

#include "platform/Folders.hpp"
#include "platform/Keychain.hpp"

namespace vek {

KeychainLock::KeychainLock(std::string_view item, std::chrono::milliseconds limit)
    : lock_(dataHome() / "vek" / (std::string(item) + ".lock"), limit) {
  // Word of what the last owner has stored may still be on its way.
  Keychain::shared().forget();
}

}  // namespace vek
