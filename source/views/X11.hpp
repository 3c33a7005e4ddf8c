// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

struct xcb_connection_t;

namespace vek::x11 {

/// The application's connection to its X server; nothing on a desktop of another kind.
[[nodiscard]] xcb_connection_t* connection();
/// The one of the first screen.
[[nodiscard]] std::uint32_t rootWindow(xcb_connection_t& connection);
/// The number of a name.
[[nodiscard]] std::uint32_t atom(xcb_connection_t& connection, std::string_view name);

/// Asks the window manager for something that concerns a window.
using MessageData = std::array<std::uint32_t, 5>;
void askWindowManager(xcb_connection_t& connection, std::uint32_t window, std::uint32_t type,
                      MessageData const& data);

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
/// What the library has allocated for an answer.
template <class Reply>
std::unique_ptr<Reply, Free> owned(Reply* reply) {
  return std::unique_ptr<Reply, Free>(reply);
}

}  // namespace vek::x11
