// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

#include "platform/LateLibrary.hpp"

namespace vek {

inline constinit LateLibrary httpLibrary{"libcurl.so.4"};

// In this namespace these names stand for the functions of the same names.
// NOLINTBEGIN(bugprone-macro-parentheses): it is declared
#define VEK_LATE(name)                                   \
  inline constinit LateFunction<decltype(::name)> name { \
    httpLibrary, #name                                   \
  }
// NOLINTEND(bugprone-macro-parentheses)
VEK_LATE(curl_easy_cleanup);
VEK_LATE(curl_easy_getinfo);
VEK_LATE(curl_easy_init);
VEK_LATE(curl_easy_setopt);
VEK_LATE(curl_easy_strerror);
VEK_LATE(curl_global_init);
VEK_LATE(curl_multi_add_handle);
VEK_LATE(curl_multi_cleanup);
VEK_LATE(curl_multi_info_read);
VEK_LATE(curl_multi_init);
VEK_LATE(curl_multi_perform);
VEK_LATE(curl_multi_poll);
VEK_LATE(curl_multi_remove_handle);
VEK_LATE(curl_multi_setopt);
VEK_LATE(curl_multi_wakeup);
VEK_LATE(curl_slist_append);
VEK_LATE(curl_slist_free_all);
#undef VEK_LATE

}  // namespace vek
