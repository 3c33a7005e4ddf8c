// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "services/backend/BackendStore.hpp"
#include "services/backend/ChatCompletions.hpp"
#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// The transcripts backend: its ten endpoints over a store. A request is done in the name of the
/// user whose bearer token it carries; each that is refused is answered with an `ErrorDTO`.
class Backend {
 public:
  /// Whose data an access token opens; nothing when it is not valid. Any thread.
  using Authorization = std::function<std::optional<UserID>(std::string_view accessToken)>;

  /// The store outlives the backend. With a chat-completions endpoint the analyses come from
  /// there, otherwise they are made by rules.
  Backend(BackendStore& store, Authorization authorization, ChatCompletions::Configuration chat);

  /// Answers one request. Any thread.
  void handle(Request request, Reply reply);

  /// Answers at once what waits for a chat-completions endpoint, now and later.
  void stop();

 private:
  /// A request with a valid token, and the way to answer it.
  struct Call {
    UserID user;
    Request request;
    Reply reply;
  };
  struct Route;
  static Route const routes[];

  UserID authorized(Request const& request);
  void dispatch(Request request, Reply reply);

  void getTranscriptAnalysis(Call& call);
  void getCustomers(Call& call);
  void getPreMeetingsBriefs(Call& call);
  void createTranscript(Call& call);
  void updateTranscript(Call& call);
  void completeTranscript(Call& call);
  void getAllTranscripts(Call& call);
  void deleteTranscript(Call& call);
  void getAllTranscriptsMetadata(Call& call);
  void getTranscriptContent(Call& call);

  void analyse(std::string text, ChatCompletions::Completion done);
  std::optional<std::string> keptAnalysis(UUID transcript, std::string const& text);
  void keep(UUID transcript, std::string const& text, std::string const& analysis);

  BackendStore& store_;
  Authorization const authorization_;
  // The last member, so that what is under way ends before the rest goes.
  std::unique_ptr<ChatCompletions> chat_;
};

}  // namespace vek::services
