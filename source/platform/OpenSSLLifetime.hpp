// SPDX-License-Identifier: MIT
#pragma once

namespace vek {

/// Has OpenSSL stay until the process ends, if nothing has used it yet.
bool keepOpenSSL() noexcept;

/// Threads use it for as long as the process lives, so it must not clean up before they end. This
/// comes before any thread, in each program that has a source with this header.
inline bool const isOpenSSLKept = keepOpenSSL();

}  // namespace vek
