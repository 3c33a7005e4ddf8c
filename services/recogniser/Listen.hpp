// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// The hosted recogniser: streams of audio over WebSockets at `path`, recognised on this machine.
/// Its models are in memory only while there is something to recognise.
class Listen {
 public:
  static constexpr std::string_view path = "/v1/listen";
  /// One thread recognises for all: it keeps up with about as many people who speak at once.
  static constexpr std::size_t streamLimit = 8;

  /// `key`: what a client has to know. An empty one lets nobody in.
  Listen(OnDeviceSpeechParts parts, std::string_view key);
  Listen(Listen const&) = delete;
  Listen& operator=(Listen const&) = delete;
  /// Ends what is being recognised.
  ~Listen();

  /// Answers one request. Any thread.
  void handle(Request const& request, Reply const& reply);

 private:
  Response answer(Request const& request);
  [[nodiscard]] bool isAuthorized(Request const& request) const;
  std::shared_ptr<void> takeSeat();

  OnDeviceSpeechParts parts_;
  std::shared_ptr<SpeechRecognizer> recognizer_;
  std::string keyHash_;
  std::shared_ptr<std::atomic<std::size_t>> seatsTaken_ =
      std::make_shared<std::atomic<std::size_t>>(0);
};

}  // namespace vek::services
