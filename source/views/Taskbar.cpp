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
    constexpr std::uint32_t fromApplication = 1;
    x11::askWindowManager(*connection, number, property,
                          {isLeftOut ? 1U : 0U, states[0], states[1], fromApplication});
  } else if (isLeftOut) {
    setBeforeShowing(*connection, number, property, states);
  }
}

}  // namespace vek
