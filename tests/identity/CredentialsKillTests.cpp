// SPDX-License-Identifier: MIT
#include "support/CredentialsKills.hpp"

namespace vek {
namespace {

using test::CredentialsKills;

/// In the files and in the Secret Service.
class CredentialsKillTest : public testing::TestWithParam<CredentialsKills::Place> {
 protected:
  CredentialsKills kills_{GetParam()};
};

// The same 200 times in soak_credentials.
TEST_P(CredentialsKillTest, KilledWhileStoringLeavesTheOldRecordOrTheNew) {
  EXPECT_EQ(kills_.killWhileStoring(10), "");
}

TEST_P(CredentialsKillTest, KilledWhileRenewingLeavesTheUserSignedIn) {
  EXPECT_EQ(kills_.killWhileRenewing(10), "");
}

TEST_P(CredentialsKillTest, TwoProgramsThatRenewAtOnceCauseOneRenewal) {
  auto const [first, second] = kills_.renewTwiceAtOnce();
  EXPECT_EQ(first, "access-1");
  EXPECT_EQ(second, "access-1");
  EXPECT_EQ(kills_.provider().renewals(), 1);
}

INSTANTIATE_TEST_SUITE_P(Places, CredentialsKillTest,
                         testing::Values(CredentialsKills::Place::files,
                                         CredentialsKills::Place::secretService),
                         [](auto const& place) {
                           return place.param == CredentialsKills::Place::files ? "Files"
                                                                                : "SecretService";
                         });

}  // namespace
}  // namespace vek
