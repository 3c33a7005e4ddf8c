// SPDX-License-Identifier: MIT
// For the sources of the HTTP server alone: this one includes Beast.
#pragma once

#include "services/support/HTTPServerState.hpp"

#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>

namespace vek::services {

/// Agrees to `request`, which asks for a WebSocket, and hands the WebSocket to `accepted` on a
/// server thread. A request that asks in a wrong way is refused here.
void acceptWebSocket(Connection::Stream stream,
                     boost::beast::http::request<boost::beast::http::string_body> const& request,
                     std::shared_ptr<HTTPServerState> state, WebSocketHandler accepted);

}  // namespace vek::services
