// SPDX-License-Identifier: MIT
#include "services/recogniser/Listen.hpp"

#include "platform/Log.hpp"
#include "services/recogniser/ListenSession.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

namespace {

Logger const logger("recogniser");

constexpr std::string_view scheme = "Token";

/// A place among the streams, given back when the last copy goes.
struct Seat {
  explicit Seat(std::shared_ptr<std::atomic<std::size_t>> seatsTaken)
      : taken(std::move(seatsTaken)) {}
  Seat(Seat const&) = delete;
  Seat& operator=(Seat const&) = delete;
  ~Seat() { --*taken; }

  std::shared_ptr<std::atomic<std::size_t>> taken;
};

}  // namespace

Listen::Listen(OnDeviceSpeechParts parts, std::string_view key)
    : parts_(std::move(parts)),
      recognizer_(onDeviceSpeechRecognizer(parts_).make(Locale("en-US"))),
      keyHash_(key.empty() ? "" : tokenHash(key)) {}

Listen::~Listen() {
  parts_.engine->stop();
}

void Listen::handle(Request const& request, Reply const& reply) {
  try {
    reply(answer(request));
  } catch (Refusal const& refusal) {
    auto response = Response::refusal(refusal.status, refusal.what());
    response.challenge = scheme;
    if (refusal.status == 405) response.headers.emplace_back("Allow", "GET");
    reply(std::move(response));
  } catch (std::exception const& error) {
    logger.error(error.what());
    reply(Response::refusal(500, "The recogniser failed."));
  }
}

Response Listen::answer(Request const& request) {
  if (!isAuthorized(request)) {
    throw Refusal(401, "The header \"Authorization\" does not name the key of this recogniser.");
  }
  if (request.method != "GET") throw Refusal(405, "This endpoint takes GET only.");
  if (!request.asksForWebSocket) throw Refusal(426, "This endpoint takes WebSockets only.");
  auto const query = ListenQuery::parse(request.query);
  if (auto const problem = parts_.problem()) {
    logger.error(*problem);
    throw Refusal(503, *problem);
  }
  auto seat = takeSeat();
  if (!seat) throw Refusal(503, "Too many streams are being recognised. Try again later.");

  Response response;
  response.webSocket = [recognizer = recognizer_, query,
                        seat = std::move(seat)](std::shared_ptr<WebSocket> socket) {
    std::make_shared<ListenSession>(std::move(socket), recognizer, query, seat)->start();
  };
  return response;
}

bool Listen::isAuthorized(Request const& request) const {
  auto const given = request.header("Authorization");
  return given.starts_with(scheme) && given.substr(scheme.size()).starts_with(' ') &&
         tokenHash(given.substr(scheme.size() + 1)) == keyHash_;
}

/// Null when none is left.
std::shared_ptr<void> Listen::takeSeat() {
  auto const taken = ++*seatsTaken_;
  auto seat = std::make_shared<Seat>(seatsTaken_);
  if (taken > streamLimit) return nullptr;
  return seat;
}

}  // namespace vek::services
