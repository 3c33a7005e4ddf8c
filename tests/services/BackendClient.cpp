// SPDX-License-Identifier: MIT
#include "services/BackendClient.hpp"

#include <curl/curl.h>

#include "records/ErrorDTO.hpp"
#include "records/NewTranscriptDTO.hpp"
#include "records/UpdateTranscriptDTO.hpp"

namespace vek::test {

namespace {

std::size_t collect(char* data, std::size_t size, std::size_t count, void* body) {
  static_cast<std::string*>(body)->append(data, size * count);
  return size * count;
}

}  // namespace

std::string Answer::message() const {
  return as<ErrorDTO>().message;
}

BackendClient::BackendClient(std::string url, std::filesystem::path authority,
                             std::string accessToken)
    : token(std::move(accessToken)),
      url_(std::move(url)),
      authority_(std::move(authority)),
      handle_(curl_easy_init()) {}

BackendClient::~BackendClient() {
  curl_easy_cleanup(handle_);
}

Answer BackendClient::request(std::string const& method, std::string const& path,
                              std::string const& body, std::vector<std::string> const& headers) {
  Answer answer;
  auto const url = url_ + (path.starts_with('/') ? path : "/api/v1/agents/" + path);
  auto const authorization = "Authorization: Bearer " + token;
  curl_slist* list = nullptr;
  if (!token.empty()) list = curl_slist_append(list, authorization.c_str());
  for (auto const& header : headers) list = curl_slist_append(list, header.c_str());

  curl_easy_reset(handle_);
  curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(handle_, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle_, CURLOPT_TIMEOUT, 20L);
  curl_easy_setopt(handle_, CURLOPT_CAINFO, authority_.c_str());
  curl_easy_setopt(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
  curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, list);
  if (method == "HEAD") curl_easy_setopt(handle_, CURLOPT_NOBODY, 1L);
  if (!body.empty()) {
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, body.c_str());
  }
  curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, collect);
  curl_easy_setopt(handle_, CURLOPT_WRITEDATA, &answer.body);
  auto const code = curl_easy_perform(handle_);
  if (code != CURLE_OK) answer.failure = curl_easy_strerror(code);
  curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &answer.status);
  curl_slist_free_all(list);
  return answer;
}

void BackendClient::sendRaw(std::string const& bytes) {
  curl_easy_reset(handle_);
  curl_easy_setopt(handle_, CURLOPT_URL, url_.c_str());
  curl_easy_setopt(handle_, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(handle_, CURLOPT_CAINFO, authority_.c_str());
  curl_easy_setopt(handle_, CURLOPT_CONNECT_ONLY, 1L);
  std::size_t sent = 0;
  if (curl_easy_perform(handle_) != CURLE_OK ||
      curl_easy_send(handle_, bytes.data(), bytes.size(), &sent) != CURLE_OK) {
    throw std::runtime_error("the bytes were not sent");
  }
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
