// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vek {

/// An analysis with a little of everything, at least so many bytes long.
inline std::string analysisText(std::size_t size) {
  static constexpr std::string_view section = R"(## Topic

The customer asked for a *corrected* copy of the **invoice** `INV-20418`, see [the account](https://a.org/b).
She had moved in spring, and nobody had told the accounts team.

- [x] Confirm the address
- [ ] Send the copy

1. Open the record
2. Compare the addresses

| Topic | Time |
|:------|-----:|
| Start | 0:42 |
| Rest  | 7:15 |

> First time that something went wrong.

)";
  std::string text;
  while (text.size() < size) text += section;
  return text;
}

}  // namespace vek
