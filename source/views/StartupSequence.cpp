// SPDX-License-Identifier: MIT
#include "views/StartupSequence.hpp"

#include <xcb/xcb.h>
#include <QWindow>

#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/Number.hpp"
#include "views/X11.hpp"

namespace vek {

namespace {

std::optional<xcb_timestamp_t> timeOf(std::string_view identifier) {
  constexpr std::string_view mark = "_TIME";
  auto const place = identifier.rfind(mark);
  if (place == std::string_view::npos) return std::nullopt;
  return number<xcb_timestamp_t>(identifier.substr(place + mark.size()));
}

/// Told to all who listen to the screen, in pieces that fit into an event.
void broadcast(xcb_connection_t& connection, xcb_window_t window, std::string text) {
  xcb_client_message_event_t message{};
  text.resize((text.size() / sizeof message.data + 1) * sizeof message.data);
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 8;
  message.window = window;
  message.type = x11::atom(connection, "_NET_STARTUP_INFO_BEGIN");
  for (std::size_t begin = 0; begin < text.size(); begin += sizeof message.data) {
    std::memcpy(&message.data, &text[begin], sizeof message.data);
    xcb_send_event(&connection, 0, x11::rootWindow(connection), XCB_EVENT_MASK_PROPERTY_CHANGE,
                   reinterpret_cast<char const*>(&message));
    message.type = x11::atom(connection, "_NET_STARTUP_INFO");
  }
  xcb_flush(&connection);
}

std::string quoted(std::string_view text) {
  std::string result;
  for (char const character : text) {
    if (character == '"' || character == '\\' || character == ' ') result += '\\';
    result += character;
  }
  return result;
}

}  // namespace

bool StartupSequence::activate(QWindow& window) const {
  auto* connection = x11::connection();
  auto const time = timeOf(identifier_);
  if (!connection || !time) return false;
  constexpr std::uint32_t fromApplication = 1;
  auto const number = static_cast<xcb_window_t>(window.winId());
  x11::askWindowManager(*connection, number, x11::atom(*connection, "_NET_ACTIVE_WINDOW"),
                        {fromApplication, *time});
  broadcast(*connection, number, "remove: ID=" + quoted(identifier_));
  return true;
}

}  // namespace vek
