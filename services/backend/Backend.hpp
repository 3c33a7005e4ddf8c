// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/backend/AnalysisQueue.hpp"
#include "services/backend/BackendStore.hpp"
#include "services/backend/ChatCompletions.hpp"
#include "services/backend/Summary.hpp"
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
  Backend(Backend const&) = delete;
  Backend& operator=(Backend const&) = delete;
  /// Stops.
  ~Backend();

  /// Answers one request. Any thread.
  void handle(Request request, Reply reply);

  /// Answers at once what waits for a chat-completions endpoint, now and later, and writes what is
  /// not written yet.
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

  /// Has one made by the chat-completions endpoint and keeps it.
  void makeAnalysis(AnalysisQueue::Text const& wanted, AnalysisQueue::Waiter done);
  void keepSoon(BackendStore::Analysis analysis);
  void keep(std::vector<BackendStore::Analysis> const& analyses);
  void didFail(std::string const& failure);

  BackendStore& store_;
  Authorization const authorization_;
  /// Who makes the analyses.
  std::string maker_{summaryMaker};
  std::mutex keeping_;
  /// Made by rules and not written yet. If they are lost, they are made again.
  std::vector<BackendStore::Analysis> unkept_;
  std::mutex failing_;
  std::map<std::string, AnalysisQueue::Clock::time_point> lastLogged_;
  std::unique_ptr<AnalysisQueue> queue_;
  // The last member, so that what is under way ends before the rest goes.
  std::unique_ptr<ChatCompletions> chat_;
};

}  // namespace vek::services
