// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

struct ssl_ctx_st;

namespace vek {

/// Makes connections of `context` trust the system's authorities and, beside them, those in the PEM
/// file `authority`; empty for none. A file that cannot be used is logged and adds no trust.
void trustCertificates(ssl_ctx_st* context, std::filesystem::path const& authority);

}  // namespace vek
