// SPDX-License-Identifier: MIT
#include "support/WebClient.hpp"

#include <curl/curl.h>

#include <cctype>
#include <stdexcept>

#include "records/ErrorDTO.hpp"

namespace vek::test {

namespace {

std::size_t collectBody(char* data, std::size_t size, std::size_t count, void* body) {
  static_cast<std::string*>(body)->append(data, size * count);
  return size * count;
}

std::size_t collectHeader(char* data, std::size_t size, std::size_t count, void* headers) {
  std::string line(data, size * count);
  auto const colon = line.find(": ");
  if (colon != std::string::npos) {
    for (std::size_t i = 0; i < colon; ++i) line[i] = static_cast<char>(std::tolower(line[i]));
    line.erase(line.find_last_not_of("\r\n") + 1);
    auto& map = *static_cast<std::map<std::string, std::string>*>(headers);
    map[line.substr(0, colon)] = line.substr(colon + 2);
  }
  return size * count;
}

}  // namespace

std::string Answer::header(std::string const& name) const {
  auto const found = headers.find(name);
  return found == headers.end() ? "" : found->second;
}

std::string Answer::message() const {
  return as<ErrorDTO>().message;
}

WebClient::WebClient(std::filesystem::path authority)
    : authority_(std::move(authority)), handle_(curl_easy_init()) {}

WebClient::~WebClient() {
  curl_easy_cleanup(handle_);
}

Answer WebClient::request(std::string const& method, std::string const& url,
                          std::string const& body, std::vector<std::string> const& headers) {
  Answer answer;
  curl_slist* list = nullptr;
  for (auto const& header : headers) list = curl_slist_append(list, header.c_str());

  curl_easy_reset(handle_);
  curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(handle_, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle_, CURLOPT_TIMEOUT, 20L);
  curl_easy_setopt(handle_, CURLOPT_CAINFO, authority_.c_str());
  // Keeps cookies between requests, and none beyond.
  curl_easy_setopt(handle_, CURLOPT_COOKIEJAR, "/dev/null");
  curl_easy_setopt(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
  curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, list);
  if (method == "HEAD") curl_easy_setopt(handle_, CURLOPT_NOBODY, 1L);
  if (!body.empty()) {
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, body.c_str());
  }
  curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, collectBody);
  curl_easy_setopt(handle_, CURLOPT_WRITEDATA, &answer.body);
  curl_easy_setopt(handle_, CURLOPT_HEADERFUNCTION, collectHeader);
  curl_easy_setopt(handle_, CURLOPT_HEADERDATA, &answer.headers);
  auto const code = curl_easy_perform(handle_);
  if (code != CURLE_OK) answer.failure = curl_easy_strerror(code);
  curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &answer.status);
  curl_slist_free_all(list);
  return answer;
}

void WebClient::sendRaw(std::string const& url, std::string const& bytes) {
  curl_easy_reset(handle_);
  curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(handle_, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(handle_, CURLOPT_CAINFO, authority_.c_str());
  curl_easy_setopt(handle_, CURLOPT_CONNECT_ONLY, 1L);
  std::size_t sent = 0;
  if (curl_easy_perform(handle_) != CURLE_OK ||
      curl_easy_send(handle_, bytes.data(), bytes.size(), &sent) != CURLE_OK) {
    throw std::runtime_error("the bytes were not sent");
  }
}

}  // namespace vek::test
