// SPDX-License-Identifier: MIT
#include "views/Taskbar.hpp"

#include <xcb/xcb.h>
#include <QWindow>

#include <array>

#include "views/X11.hpp"

namespace vek {

namespace {

using States = std::array<xcb_atom_t, 2>;

/// The window manager takes them up when it gets the window; the toolkit adds its own.
void setBeforeShowing(xcb_connection_t& connection, xcb_window_t window, xcb_atom_t property,
                      States const& states) {
  xcb_change_property(&connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32,
                      std::uint32_t{std::tuple_size_v<States>}, states.data());
}

void askWindowManager(xcb_connection_t& connection, xcb_window_t window, xcb_atom_t property,
                      std::uint32_t isAdded, States const& states) {
  constexpr std::uint32_t fromApplication = 1;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = property;
  message.data.data32[0] = isAdded;
  message.data.data32[1] = states[0];
  message.data.data32[2] = states[1];
  message.data.data32[3] = fromApplication;
  xcb_send_event(&connection, 0, x11::rootWindow(connection),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<char const*>(&message));
  xcb_flush(&connection);
}

}  // namespace

void setTaskbar(QWindow& window, Taskbar taskbar) {
  auto* connection = x11::connection();
  if (!connection) return;
  auto const isLeftOut = taskbar == Taskbar::leftOut;
  auto const property = x11::atom(*connection, "_NET_WM_STATE");
  States const states = {x11::atom(*connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                         x11::atom(*connection, "_NET_WM_STATE_SKIP_PAGER")};
  auto const number = static_cast<xcb_window_t>(window.winId());
  if (window.isVisible()) {
    askWindowManager(*connection, number, property, isLeftOut ? 1 : 0, states);
  } else if (isLeftOut) {
    setBeforeShowing(*connection, number, property, states);
  }
}

}  // namespace vek
