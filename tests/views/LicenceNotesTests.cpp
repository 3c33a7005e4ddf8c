// SPDX-License-Identifier: MIT
#include "views/LicenceNotes.hpp"

#include <gtest/gtest.h>

#include <QVariantMap>

namespace vek {
namespace {

TEST(LicenceNotes, TellOfWhatUsersGet) {
  auto const notes =
      licenceNotes(QStringLiteral("# All\n"
                                  "## Linked into the programs\n"
                                  "| what | package | licence |\n"
                                  "|---|---|---|\n"
                                  "| A, with `b` | `b` | MIT |\n"
                                  "All are shared libraries.\n"
                                  "## Used to build\n"
                                  "| C | `c` | GPL |\n"));
  ASSERT_EQ(notes.size(), 1);
  QVariantMap const expected = {{"what", "A, with b"}, {"licence", "MIT"}};
  EXPECT_EQ(notes[0].toMap(), expected);
}

TEST(LicenceNotes, OfTheProgramAreThere) {
  auto const has = [](char const* what) {
    for (auto const& each : licenceNotes()) {
      if (each.toMap()["what"].toString().startsWith(what)) return true;
    }
    return false;
  };
  for (auto const* what : {"OpenSSL", "Qt", "Bootstrap Icons", "ONNX Runtime", "Silero"}) {
    EXPECT_TRUE(has(what)) << what;
  }
  EXPECT_FALSE(has("Git"));
}

}  // namespace
}  // namespace vek
