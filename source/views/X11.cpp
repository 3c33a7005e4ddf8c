// SPDX-License-Identifier: MIT
#include "views/X11.hpp"

#include <xcb/xcb.h>
#include <QGuiApplication>

#include <algorithm>
#include <iterator>

namespace vek::x11 {

xcb_connection_t* connection() {
  auto const* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return application ? application->connection() : nullptr;
}

std::uint32_t rootWindow(xcb_connection_t& connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(&connection)).data->root;
}

std::uint32_t atom(xcb_connection_t& connection, std::string_view name) {
  auto const asked =
      xcb_intern_atom(&connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  auto const reply = owned(xcb_intern_atom_reply(&connection, asked, nullptr));
  return reply ? reply->atom : std::uint32_t{XCB_ATOM_NONE};
}

void askWindowManager(xcb_connection_t& connection, std::uint32_t window, std::uint32_t type,
                      MessageData const& data) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = type;
  std::ranges::copy(data, std::begin(message.data.data32));
  xcb_send_event(&connection, 0, rootWindow(connection),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<char const*>(&message));
  xcb_flush(&connection);
}

}  // namespace vek::x11
