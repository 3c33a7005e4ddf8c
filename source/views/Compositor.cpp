// SPDX-License-Identifier: MIT
#include "views/Compositor.hpp"

#include <xcb/xcb.h>
#include <xcb/xfixes.h>
#include <QByteArray>
#include <QCoreApplication>

#include <utility>

#include "views/X11.hpp"

namespace vek {

namespace {

constexpr std::uint32_t ownerChanges = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                       XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                       XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
/// An event that another program has sent is marked by this bit.
constexpr std::uint8_t kindOfEvent = 0x7f;

/// Asks to be told who owns a selection from now on. The number of those events, or 0 when the
/// server cannot tell.
std::uint8_t watchOwner(xcb_connection_t& connection, xcb_atom_t selection) {
  auto const* fixes = xcb_get_extension_data(&connection, &xcb_xfixes_id);
  if (!fixes || !fixes->present) return 0;
  // The server knows of no requests of an extension before it is told which version is meant.
  auto const version = xcb_xfixes_query_version(&connection, XCB_XFIXES_MAJOR_VERSION, 0);
  static_cast<void>(x11::owned(xcb_xfixes_query_version_reply(&connection, version, nullptr)));
  xcb_xfixes_select_selection_input(&connection, x11::rootWindow(connection), selection,
                                    ownerChanges);
  return static_cast<std::uint8_t>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
}

bool hasOwner(xcb_connection_t& connection, xcb_atom_t selection) {
  auto const asked = xcb_get_selection_owner(&connection, selection);
  auto const reply = x11::owned(xcb_get_selection_owner_reply(&connection, asked, nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace

Compositor::Compositor(std::function<void()> changed) : changed_(std::move(changed)) {
  auto* connection = x11::connection();
  if (!connection) return;
  selection_ = x11::atom(*connection, "_NET_WM_CM_S0");
  ownerChange_ = watchOwner(*connection, selection_);
  isPresent_ = hasOwner(*connection, selection_);
  qApp->installNativeEventFilter(this);
}

Compositor::~Compositor() {
  qApp->removeNativeEventFilter(this);
}

bool Compositor::nativeEventFilter(QByteArray const& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t" || ownerChange_ == 0) return false;
  auto const* event = static_cast<xcb_generic_event_t const*>(message);
  if ((event->response_type & kindOfEvent) != ownerChange_) return false;
  auto const* change = static_cast<xcb_xfixes_selection_notify_event_t const*>(message);
  if (change->selection == selection_) setPresent(change->owner != XCB_NONE);
  // The toolkit follows it, too.
  return false;
}

void Compositor::setPresent(bool isPresent) {
  if (std::exchange(isPresent_, isPresent) != isPresent) changed_();
}

}  // namespace vek
