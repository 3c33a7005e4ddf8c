// SPDX-License-Identifier: MIT
#include "platform/CoreDumps.hpp"

#include <sys/resource.h>

#include <algorithm>

#include "platform/Log.hpp"

namespace vek {

void disableCoreDumps() {
  // With 0 there is no file, but a crash reporter that the kernel hands the image to may ignore
  // that. 1 is too small for a file as well, and keeps the kernel from starting the reporter.
  // (PR_SET_DUMPABLE would do both, and hide /proc from sound servers and portals that check it.)
  // The hard limit stays, for programs that we start and that hold nothing of ours.
  rlimit limit{};
  bool const isRead = getrlimit(RLIMIT_CORE, &limit) == 0;
  limit.rlim_cur = std::min<rlim_t>(1, limit.rlim_max);
  if (!isRead || setrlimit(RLIMIT_CORE, &limit) != 0) {
    Logger("CoreDumps").error("Core dumps cannot be switched off");
  }
}

}  // namespace vek
