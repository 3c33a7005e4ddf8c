// SPDX-License-Identifier: MIT
#include "views/Compositor.hpp"

#include <xcb/xcb.h>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace vek {

namespace {

/// Who owns this selection is the compositor of the first screen.
constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class Reply>
std::unique_ptr<Reply, Free> owned(Reply* reply) {
  return std::unique_ptr<Reply, Free>(reply);
}

}  // namespace

bool isComposited() {
  auto const* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  auto* connection = x11 ? x11->connection() : nullptr;
  // What is not X11 blends by itself.
  if (!connection) return true;
  auto const name =
      xcb_intern_atom(connection, 0, compositorSelection.size(), compositorSelection.data());
  auto const atom = owned(xcb_intern_atom_reply(connection, name, nullptr));
  if (!atom) return false;
  auto const owner = xcb_get_selection_owner(connection, atom->atom);
  auto const reply = owned(xcb_get_selection_owner_reply(connection, owner, nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace vek
