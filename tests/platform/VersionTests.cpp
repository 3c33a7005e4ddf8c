// SPDX-License-Identifier: MIT
#include "platform/Version.hpp"

#include <array>

namespace vek {
namespace {

Version version(std::string_view text) {
  auto const parsed = Version::parse(text);
  EXPECT_TRUE(parsed) << text;
  return parsed.value_or(Version());
}

TEST(Version, AreOrderedAsTheirMakersMeanThem) {
  constexpr std::array inOrder = {
      "0.9", "1.0-alpha", "1.0-alpha.1", "1.0-alpha.beta", "1.0-beta.2", "1.0-beta.11",
      "1.0", "1.0.1",     "1.2",         "1.10",           "2"};
  for (std::size_t i = 0; i < inOrder.size(); ++i) {
    for (std::size_t j = 0; j < inOrder.size(); ++j) {
      EXPECT_EQ(version(inOrder[i]) <=> version(inOrder[j]), i <=> j)
          << inOrder[i] << " and " << inOrder[j];
    }
  }
  EXPECT_EQ(version("1.0.0"), version("1"));
  EXPECT_EQ(version("01.2"), version("1.02.0"));
}

TEST(Version, ATextThatIsNoneIsNone) {
  for (auto const* text : {"", ".", "1.", ".1", "1..2", "v1", "1 ", "-1", "+1", "1.x", "1-",
                           "1-a..b", "1-a b", "4294967296"}) {
    EXPECT_FALSE(Version::parse(text)) << text;
  }
  EXPECT_FALSE(Version::parse(std::string(65, '1')));
}

}  // namespace
}  // namespace vek
