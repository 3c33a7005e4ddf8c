// SPDX-License-Identifier: MIT
#include "Clients/APIClientImpl.hpp"

#include <map>

#include "Clients/APIClientError.hpp"
#include "Clients/CurlFormImpl.hpp"
#include "platform/Deployment.hpp"
#include "platform/HTTPError.hpp"
#include "records/CompleteTranscriptDTO.hpp"
#include "records/CreateTranscriptDTO.hpp"
#include "records/DecodingError.hpp"
#include "records/ErrorDTO.hpp"
#include "records/JSON.hpp"
#include "records/UpdateTranscriptDTO.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {
namespace {

using Type = APIClientError::Type;

std::optional<std::string> lowerCaseText(std::optional<UUID> const& id) {
  return id ? std::optional(id->lowerCaseText()) : std::nullopt;
}

/// The reason that the backend gives for a refusal, where it gives one.
std::optional<std::string> refusal(std::string_view body) {
  try {
    return json::decode<ErrorDTO>(body).message;
  } catch (DecodingError const&) {
    return std::nullopt;
  }
}

std::string objectOf(std::string key, std::string value) {
  return json::encode(std::map<std::string, std::string>{{std::move(key), std::move(value)}});
}

// What does not await stands in functions of its own, out of line: its locals would otherwise live
// in the frame of each waiting request.

[[gnu::noinline]] void authorise(HTTPRequest& request, Credentials const& credentials) {
  request.headers.push_back({"Authorization", "Bearer " + credentials.accessToken()});
}

/// Throws unless the answer is one of success.
[[gnu::noinline]] HTTPResponse checked(HTTPResponse response) {
  if (response.status >= 200 && response.status <= 299) return response;
  throw APIClientError(response.url, {Type::httpError{response.status}}, refusal(response.body));
}

/// Throws what a transport failure means to callers. To be called where `error` is caught.
[[noreturn, gnu::noinline]] void fail(HTTPError const& error, std::string const& url) {
  if (error.code() != HTTPError::Code::notHTTP) throw;
  throw APIClientError(url, {Type::invalidResponse()});
}

template <class Answer>
[[gnu::noinline]] Answer decoded(HTTPResponse const& response) {
  try {
    return json::decode<Answer>(response.body);
  } catch (DecodingError const& error) {
    throw APIClientError(response.url, {Type::jsonDecoding()}, error.what());
  }
}

}  // namespace

[[gnu::noinline]] HTTPRequest APIClientImpl::makeRequest(Call&& call) const {
  URLComponents components(baseURL_ + call.path);
  if (call.queryItems) components.setQueryItems(*call.queryItems);
  auto url = components.url();
  if (!url) throw APIClientError(components.text(), {Type::invalidURL()});
  HTTPRequest request{
      .method = std::move(call.method), .url = std::move(*url), .body = std::move(call.body)};
  if (request.body) request.headers.push_back({"Content-Type", "application/json"});
  return request;
}

Task<HTTPResponse> APIClientImpl::send(Call&& call) const {
  HTTPRequest request = makeRequest(std::move(call));
  authorise(request, co_await credentialsClient_->credentials());
  logger_.debug([&] { return curlForm(request); });
  std::string const url = request.url;
  try {
    co_return checked(co_await http_.send(std::move(request)));
  } catch (HTTPError const& error) {
    fail(error, url);
  }
}

template <class Answer>
Task<Answer> APIClientImpl::request(Call call) const {
  co_return decoded<Answer>(co_await send(std::move(call)));
}

Task<std::string> APIClientImpl::getTranscriptAnalysis(std::string transcript) const {
  return request<std::string>({.method = "POST",
                               .path = "getTranscriptAnalysis",
                               .body = objectOf("transcript", std::move(transcript))});
}

Task<std::vector<CustomerDTO>> APIClientImpl::getCustomers() const {
  return request<std::vector<CustomerDTO>>({.method = "GET", .path = "customers"});
}

Task<std::vector<BriefDTO>> APIClientImpl::getPreMeetingsBriefs(
    std::optional<UUID> customer) const {
  Call call{.method = "GET", .path = "preMeetingsBriefs"};
  if (customer) call.queryItems = {{"customer_id", customer->upperCaseText()}};
  return request<std::vector<BriefDTO>>(std::move(call));
}

Task<NewTranscriptDTO> APIClientImpl::createTranscript(std::optional<UUID> customer,
                                                       std::optional<UUID> insight) const {
  CreateTranscriptDTO const body{.customerID = lowerCaseText(customer),
                                 .insightID = lowerCaseText(insight)};
  return request<NewTranscriptDTO>(
      {.method = "POST", .path = "createMeetingTranscript", .body = json::encode(body)});
}

Task<> APIClientImpl::updateTranscript(std::string text, UUID transcript) const {
  UpdateTranscriptDTO const body{.transcript = std::move(text),
                                 .transcriptID = transcript.lowerCaseText()};
  co_await send({.method = "POST", .path = "appendMeetingTranscript", .body = json::encode(body)});
}

Task<CompletedTranscriptDTO> APIClientImpl::completeTranscript(UUID customer,
                                                               UUID transcript) const {
  CompleteTranscriptDTO const body{.customerID = customer.lowerCaseText(),
                                   .transcriptID = transcript.lowerCaseText()};
  return request<CompletedTranscriptDTO>(
      {.method = "POST", .path = "completeMeetingTranscript", .body = json::encode(body)});
}

Task<std::vector<TranscriptDTO>> APIClientImpl::getAllTranscripts(
    std::optional<UUID> customer, std::optional<UUID> insight) const {
  std::vector<URLQueryItem> items;
  if (customer) items.push_back({"customer_id", customer->upperCaseText()});
  if (insight) items.push_back({"insight_id", insight->upperCaseText()});
  return request<std::vector<TranscriptDTO>>(
      {.method = "GET", .path = "transcripts", .queryItems = std::move(items)});
}

Task<DeletedTranscriptDTO> APIClientImpl::deleteTranscript(UUID transcript) const {
  return request<DeletedTranscriptDTO>(
      {.method = "DELETE", .path = "transcripts/" + transcript.upperCaseText()});
}

Task<std::vector<TranscriptMetadataDTO>> APIClientImpl::getAllTranscriptsMetadata() const {
  return request<std::vector<TranscriptMetadataDTO>>(
      {.method = "GET", .path = "getAllTranscriptsMetadata"});
}

Task<TranscriptContentDTO> APIClientImpl::getTranscriptContent(UUID transcript) const {
  return request<TranscriptContentDTO>(
      {.method = "POST",
       .path = "getTranscriptContent",
       .body = objectOf("transcript_id", transcript.lowerCaseText())});
}

APIClient APIClientImpl::client(std::shared_ptr<APIClientImpl const> impl) {
  // An operation of the record: calls `method`, off the caller's thread.
  auto const operation = [&impl](auto method) {
    return [impl, method](auto... arguments) {
      return on(ThreadPool::shared(), (impl.get()->*method)(std::move(arguments)...));
    };
  };
  return {.getTranscriptAnalysis = operation(&APIClientImpl::getTranscriptAnalysis),
          .getCustomers = operation(&APIClientImpl::getCustomers),
          .getPreMeetingsBriefs = operation(&APIClientImpl::getPreMeetingsBriefs),
          .createTranscript = operation(&APIClientImpl::createTranscript),
          .updateTranscript = operation(&APIClientImpl::updateTranscript),
          .completeTranscript = operation(&APIClientImpl::completeTranscript),
          .getAllTranscripts = operation(&APIClientImpl::getAllTranscripts),
          .deleteTranscript = operation(&APIClientImpl::deleteTranscript),
          .getAllTranscriptsMetadata = operation(&APIClientImpl::getAllTranscriptsMetadata),
          .getTranscriptContent = operation(&APIClientImpl::getTranscriptContent)};
}

APIClient APIClientKey::liveValue() {
  return APIClientImpl::client(std::make_shared<APIClientImpl const>(
      deployment().backendURL + "/api/v1/agents/", HTTPClient::shared()));
}

}  // namespace vek
