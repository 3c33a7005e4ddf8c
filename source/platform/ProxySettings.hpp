// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// A server through which others are reached.
struct Proxy {
  /// "http" for one that is spoken to in the clear.
  std::string scheme;
  std::string host;
  std::uint16_t port;
  /// The value of the header that lets the user in; empty for none. A secret.
  std::string authorization = {};
};

/// The hosts that are reached without a proxy, between commas: this machine, and those in no_proxy.
[[nodiscard]] std::string hostsWithoutProxy();

/// Whether `host` is among `hosts`, which names hosts, domains with all below them, addresses,
/// networks such as 10.0.0.0/8, or * for all of them.
[[nodiscard]] bool isAmong(std::string_view hosts, std::string_view host);

/// What the environment says about connections to `host`: http_proxy in the clear, https_proxy with
/// TLS, all_proxy for both, the last two in capitals as well.
[[nodiscard]] std::optional<Proxy> proxyFor(std::string_view host, bool isSecure);

}  // namespace vek
