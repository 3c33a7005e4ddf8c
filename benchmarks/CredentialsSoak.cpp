// SPDX-License-Identifier: MIT
// Kills programs that store and renew a user's credentials at random moments, in files and in a
// Secret Service, and looks at the item and the login after each kill.
//
//     soak_credentials [KILLS]     of each kind; exit status 1 when one of them did harm

#include <fmt/format.h>

#include <string>

#include "support/CredentialsKills.hpp"

namespace {

using vek::test::CredentialsKills;

/// Whether nothing was broken.
bool report(char const* what, int times, std::string const& damage) {
  fmt::print("{} kills while {}: {}\n", times, what, damage.empty() ? "no harm" : damage);
  std::fflush(stdout);
  return damage.empty();
}

bool run(CredentialsKills::Place place, char const* name, int times) {
  CredentialsKills kills(place);
  bool const isStoringSafe =
      report(fmt::format("storing in {}", name).c_str(), times, kills.killWhileStoring(times));
  return report(fmt::format("renewing in {}", name).c_str(), times,
                kills.killWhileRenewing(times)) &&
         isStoringSafe;
}

}  // namespace

int main(int count, char** arguments) {
  int const times = count > 1 ? std::stoi(arguments[1]) : 200;
  try {
    bool const areFilesSafe = run(CredentialsKills::Place::files, "files", times);
    bool const isServiceSafe =
        run(CredentialsKills::Place::secretService, "the Secret Service", times);
    return areFilesSafe && isServiceSafe ? 0 : 1;
  } catch (std::exception const& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
