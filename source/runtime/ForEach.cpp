// SPDX-License-Identifier: MIT
#include "runtime/ForEach.hpp"

#include <fmt/format.h>

#include "runtime/EffectRuns.hpp"
#include "runtime/Report.hpp"

namespace vek {

void reportMissingElement(std::source_location const& location, std::string const& action) {
  report(fmt::format(
      "A \"forEach\" at \"{}\" received an action for a missing element. …\n\n  Action:\n    {}\n\n"
      "The element is no longer in the list. This is normal when an effect of a closed element "
      "still answers; the action is dropped.",
      describe(location), action));
}

}  // namespace vek
