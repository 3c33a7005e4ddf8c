// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Clients/APIClient.hpp"
#include "Clients/CredentialsClient.hpp"
#include "platform/HTTPClient.hpp"
#include "platform/Log.hpp"
#include "platform/URLComponents.hpp"
#include "runtime/Dependency.hpp"

namespace vek {

/// Builds, authorises and sends the backend's requests and reads their answers. It holds no state
/// between calls, and works on the threads of the pool so that long answers hold up nobody.
class APIClientImpl {
 public:
  /// `baseURL` is what all paths begin with. The access token comes from the `credentialsClient`
  /// in force now, for each request anew.
  APIClientImpl(std::string baseURL, HTTPClient http)
      : baseURL_(std::move(baseURL)), http_(std::move(http)) {}

  Task<std::string> getTranscriptAnalysis(std::string transcript) const;
  Task<std::vector<CustomerDTO>> getCustomers() const;
  Task<std::vector<BriefDTO>> getPreMeetingsBriefs(std::optional<UUID> customer) const;
  Task<NewTranscriptDTO> createTranscript(std::optional<UUID> customer,
                                          std::optional<UUID> insight) const;
  Task<> updateTranscript(std::string text, UUID transcript) const;
  Task<CompletedTranscriptDTO> completeTranscript(UUID customer, UUID transcript) const;
  Task<std::vector<TranscriptDTO>> getAllTranscripts(std::optional<UUID> customer,
                                                     std::optional<UUID> insight) const;
  Task<DeletedTranscriptDTO> deleteTranscript(UUID transcript) const;
  Task<std::vector<TranscriptMetadataDTO>> getAllTranscriptsMetadata() const;
  Task<TranscriptContentDTO> getTranscriptContent(UUID transcript) const;

  /// The record of the ten operations around `impl`.
  static APIClient client(std::shared_ptr<APIClientImpl const> impl);

 private:
  /// What an endpoint is asked.
  struct Call {
    std::string method;
    std::string path;
    std::optional<std::vector<URLQueryItem>> queryItems = {};
    std::optional<std::string> body = {};
  };

  /// Throws APIClientError when there is no such URL.
  HTTPRequest makeRequest(Call&& call) const;
  /// Sends a call and decodes the answer.
  template <class Answer>
  Task<Answer> request(Call call) const;
  /// Sends a call, which has to live as long as the task, and gives the answer that passed the
  /// check of its status.
  Task<HTTPResponse> send(Call&& call) const;

  std::string baseURL_;
  HTTPClient http_;
  Logger logger_{"APIClient"};
  Dependency<CredentialsClientKey> credentialsClient_;
};

}  // namespace vek
