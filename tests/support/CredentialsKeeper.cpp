// SPDX-License-Identifier: MIT
// Keeps the credentials of "com.vek.test" as VEK does, for tests that start and kill it.
//
//     credentials-keeper store|renew|once URL AUTHORITY
//
// Prints a line when it is about to begin. `store` stores one record after the other, `renew` has
// each renewed at once, and `once` waits for a line and prints the access token that it gets.

#include <iostream>
#include <string>

#include "identity/CredentialsArchive.hpp"
#include "runtime/SyncWait.hpp"
#include "support/MarkedCredentials.hpp"

namespace {

using namespace vek;

void storeForever(CredentialsManager const& manager) {
  auto const stored =
      CredentialsArchive::unarchive(manager.storage->readEntry(manager.storeKey).value());
  for (int i = 0;; ++i) {
    if (!manager.store(test::markedRecord(i, stored->refreshToken().value()))) {
      throw std::runtime_error("A record was not stored.");
    }
  }
}

void run(std::string const& mode, CredentialsManager const& manager) {
  std::cout << "ready" << std::endl;
  if (mode == "store") {
    storeForever(manager);
  } else if (mode == "renew") {
    while (true) syncWait(manager.credentials(test::scopeOfNoRecord));
  } else {
    std::string line;
    std::getline(std::cin, line);
    std::cout << syncWait(manager.credentials()).accessToken() << std::endl;
  }
}

}  // namespace

int main(int, char** arguments) {
  try {
    run(arguments[1], test::managerFor(arguments[2], arguments[3]));
  } catch (std::exception const& error) {
    std::cerr << error.what() << std::endl;
    return 1;
  }
}
