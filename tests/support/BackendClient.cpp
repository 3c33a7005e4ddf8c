// SPDX-License-Identifier: MIT
#include "support/BackendClient.hpp"

#include "records/NewTranscriptDTO.hpp"
#include "records/UpdateTranscriptDTO.hpp"

namespace vek::test {

Answer BackendClient::request(std::string const& method, std::string const& path,
                              std::string const& body, std::vector<std::string> headers) {
  if (!token.empty()) headers.push_back("Authorization: Bearer " + token);
  return client_.request(method, url_ + (path.starts_with('/') ? path : "/api/v1/agents/" + path),
                         body, headers);
}

std::string BackendClient::create() {
  return post("createMeetingTranscript", "{}").as<NewTranscriptDTO>().id.lowerCaseText();
}

Answer BackendClient::append(std::string const& transcript, std::string const& text) {
  return post("appendMeetingTranscript",
              json::encode(UpdateTranscriptDTO{.transcript = text, .transcriptID = transcript}));
}

Answer BackendClient::content(std::string const& transcript) {
  return post("getTranscriptContent", R"({"transcript_id": ")" + transcript + "\"}");
}

}  // namespace vek::test
