// SPDX-License-Identifier: MIT
#include "Clients/CurlFormImpl.hpp"

namespace vek {
namespace {

TEST(CurlForm, LeavesOutWhatCannotBeShown) {
  std::string const head = "curl \"u\" \\\n\t-X POST";
  auto const withBody = [](std::string body) {
    return curlForm({.method = "POST", .url = "u", .headers = {{"Cookie", "c"}}, .body = body});
  };
  EXPECT_EQ(withBody("grüße €🎉"), head + " \\\n\t-d 'grüße €🎉'");
  for (char const* body : {"\xff", "\xc3", "\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80",
                           "\xf5\x80\x80\x80", "a\x80", "\xf0\x9f\x8e"}) {
    EXPECT_EQ(withBody(body), head);
  }
  EXPECT_EQ(curlForm({.method = "HEAD", .url = "u"}), "curl \"u\" --head");
}

}  // namespace
}  // namespace vek
