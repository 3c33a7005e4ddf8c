// SPDX-License-Identifier: MIT
#include "platform/ProxySettings.hpp"

#include "support/Environment.hpp"

namespace vek {
namespace {

using test::EnvironmentVariable;

TEST(ProxySettings, NamesOfHostsWithoutProxyCoverDomainsAndNetworks) {
  struct Case {
    std::string_view hosts;
    std::string_view host;
    bool isAmong;
  };
  for (auto const& [hosts, host, expected] : {
           Case{"*", "host.test", true},
           Case{"a.test,host.test", "HOST.test", true},
           Case{"a.test .host.test", "deep.host.test", true},
           Case{"host.test", "ghost.test", false},
           Case{"host.test", "test", false},
           Case{"10.1.2.3", "10.1.2.3", true},
           Case{"10.1.0.0/17", "10.1.127.1", true},
           Case{"10.1.0.0/17", "10.1.128.1", false},
           Case{"10.1.0.0/99", "10.1.0.0", false},
           Case{"fd00::/8", "fd12::1", true},
           Case{"fd00::/8", "10.1.0.0", false},
           Case{"0.0.1", "10.0.0.1", false},
           Case{"", "host.test", false},
       }) {
    EXPECT_EQ(isAmong(hosts, host), expected) << hosts << " and " << host;
  }
}

TEST(ProxySettings, ComeFromTheEnvironment) {
  EnvironmentVariable const none("no_proxy", "direct.test");
  EnvironmentVariable const all("ALL_PROXY", "socks5://[::1]:9");
  EnvironmentVariable const plain("http_proxy", "plain.test");
  EnvironmentVariable const capitals("HTTP_PROXY", "http://from-a-header.test");
  {
    EnvironmentVariable const secure("HTTPS_PROXY", "http://us%40er:p:w@secure.test:8080/");
    auto const proxy = proxyFor("host.test", true);
    ASSERT_TRUE(proxy);
    EXPECT_EQ(proxy->host, "secure.test");
    EXPECT_EQ(proxy->port, 8080);
    EXPECT_EQ(proxy->authorization, "Basic dXNAZXI6cDp3");
  }
  auto const general = proxyFor("host.test", true);
  ASSERT_TRUE(general);
  EXPECT_EQ(general->scheme + " " + general->host, "socks5 ::1");
  EXPECT_EQ(general->port, 9);
  auto const clear = proxyFor("host.test", false);
  ASSERT_TRUE(clear);
  EXPECT_EQ(clear->host, "plain.test");
  EXPECT_EQ(clear->port, 1080);
  EXPECT_EQ(clear->authorization, "");
  for (auto const* host : {"direct.test", "localhost", "127.0.0.1", "::1"}) {
    EXPECT_FALSE(proxyFor(host, true)) << host;
  }
}

}  // namespace
}  // namespace vek
