// SPDX-License-Identifier: MIT
#include "platform/CoreDumps.hpp"

#include <sys/resource.h>

namespace vek {

void disableCoreDumps() {
  // With 0 there is no file, but a crash reporter that the kernel hands the image to may ignore
  // that. 1 is too small for a file as well, and keeps the kernel from starting the reporter.
  // (PR_SET_DUMPABLE would do both, and hide /proc from sound servers and portals that check it.)
  rlimit const none{.rlim_cur = 1, .rlim_max = 1};
  setrlimit(RLIMIT_CORE, &none);
}

}  // namespace vek
