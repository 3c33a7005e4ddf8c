// SPDX-License-Identifier: MIT
#include "platform/HTTPTransfer.hpp"

#include <fmt/format.h>
#include <openssl/ssl.h>

#include <new>

#include "platform/HTTPError.hpp"
#include "platform/HTTPLibrary.hpp"
#include "platform/ProxySettings.hpp"
#include "platform/TrustedCertificates.hpp"

namespace vek {
namespace {

HTTPError::Code errorCode(CURL* handle, CURLcode code) {
  using enum HTTPError::Code;
  // A signature that does not hold, unlike a name that nobody knows, counts as a failed handshake.
  long verified = X509_V_OK;
  curl_easy_getinfo(handle, CURLINFO_SSL_VERIFYRESULT, &verified);
  if (code == CURLE_SSL_CONNECT_ERROR && verified != X509_V_OK) return untrustedServer;
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return cannotFindHost;
    case CURLE_COULDNT_CONNECT:
    case CURLE_SSL_CONNECT_ERROR:
      return cannotConnect;
    case CURLE_OPERATION_TIMEDOUT:
      return timedOut;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
      return untrustedServer;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return connectionLost;
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
      return notHTTP;
    default:
      return other;
  }
}

std::string_view trimmed(std::string_view text) {
  constexpr char const* white = " \t\r\n";
  auto const begin = text.find_first_not_of(white);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(white) + 1 - begin);
}

}  // namespace

struct HTTPTransfer::Callbacks {
  static std::size_t write(char* data, std::size_t, std::size_t size, void* user) {
    auto* self = static_cast<HTTPTransfer*>(user);
    std::string& body = self->response_.body;
    if (body.size() + size > self->request_.largestBody.value_or(self->options_.largestBody)) {
      self->bodyTooLarge_ = true;
      return 0;
    }
    body.append(data, size);
    return size;
  }

  static std::size_t header(char* data, std::size_t, std::size_t size, void* user) {
    auto& headers = static_cast<HTTPTransfer*>(user)->response_.headers;
    std::string_view const line(data, size);
    // Each status line begins the headers anew: those of interim answers do not count.
    if (line.starts_with("HTTP/")) headers.clear();
    if (auto const colon = line.find(':'); colon != std::string_view::npos) {
      headers.push_back(
          {std::string(line.substr(0, colon)), std::string(trimmed(line.substr(colon + 1)))});
    }
    return size;
  }

  static CURLcode context(CURL*, void* context, void* user) {
    trustCertificates(static_cast<SSL_CTX*>(context),
                      static_cast<HTTPTransfer*>(user)->options_.trustedAuthority);
    return CURLE_OK;
  }
};

HTTPTransfer::HTTPTransfer(HTTPRequest request, HTTPClient::Options const& options)
    : request_(std::move(request)), options_(options), handle_(curl_easy_init()) {
  static_assert(std::tuple_size_v<decltype(errorText_)> == CURL_ERROR_SIZE);
  if (!handle_) throw std::bad_alloc();
  curl_easy_setopt(handle_, CURLOPT_URL, request_.url.c_str());
  curl_easy_setopt(handle_, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle_, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_2TLS});
  curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle_, CURLOPT_TIMEOUT_MS, static_cast<long>(request_.timeout.count()));
  curl_easy_setopt(handle_, CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(handle_, CURLOPT_NOPROXY, hostsWithoutProxy().c_str());
  curl_easy_setopt(handle_, CURLOPT_ERRORBUFFER, errorText_.data());
  curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, &Callbacks::write);
  curl_easy_setopt(handle_, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(handle_, CURLOPT_HEADERFUNCTION, &Callbacks::header);
  curl_easy_setopt(handle_, CURLOPT_HEADERDATA, this);
  setMethodAndBody();
  setHeaders();
  setTrust();
}

HTTPTransfer::~HTTPTransfer() {
  curl_easy_cleanup(handle_);
  curl_slist_free_all(static_cast<curl_slist*>(headerList_));
}

void HTTPTransfer::setMethodAndBody() {
  if (request_.body) {
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request_.body->size()));
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, request_.body->data());
  } else if (request_.method == "HEAD") {
    curl_easy_setopt(handle_, CURLOPT_NOBODY, 1L);
  } else if (request_.method == "POST") {
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE, 0L);
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, "");
  }
  curl_easy_setopt(handle_, CURLOPT_CUSTOMREQUEST, request_.method.c_str());
}

void HTTPTransfer::setHeaders() {
  // An empty value leaves out a header that the library would add.
  curl_slist* list = curl_slist_append(nullptr, "Expect:");
  bool hasContentType = false;
  for (auto const& [name, value] : request_.headers) {
    hasContentType = hasContentType || name == "Content-Type";
    list = curl_slist_append(list, fmt::format("{}: {}", name, value).c_str());
  }
  if (!hasContentType) list = curl_slist_append(list, "Content-Type:");
  headerList_ = list;
  curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, list);
}

void HTTPTransfer::setTrust() {
  // The library would read the system's whole bundle for each connection, or share one store
  // between them; OpenSSL looks up just the authority that is asked for.
  curl_easy_setopt(handle_, CURLOPT_CAINFO, nullptr);
  curl_easy_setopt(handle_, CURLOPT_CAPATH, nullptr);
  curl_easy_setopt(handle_, CURLOPT_CA_CACHE_TIMEOUT, 0L);
  curl_easy_setopt(handle_, CURLOPT_SSL_CTX_FUNCTION, &Callbacks::context);
  curl_easy_setopt(handle_, CURLOPT_SSL_CTX_DATA, this);
}

Result<HTTPResponse> HTTPTransfer::outcome(int number) {
  auto const code = static_cast<CURLcode>(number);
  if (code != CURLE_OK) {
    std::string const detail = errorText_[0] ? errorText_.data() : curl_easy_strerror(code);
    if (bodyTooLarge_) return std::make_exception_ptr(HTTPError(HTTPError::Code::bodyTooLarge, ""));
    return std::make_exception_ptr(HTTPError(errorCode(handle_, code), detail));
  }
  long status = 0;
  curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &status);
  response_.status = static_cast<int>(status);
  response_.url = request_.url;
  return std::move(response_);
}

bool HTTPTransfer::wasMultiplexed() const {
  long version = 0;
  curl_easy_getinfo(handle_, CURLINFO_HTTP_VERSION, &version);
  return version == CURL_HTTP_VERSION_2_0;
}

}  // namespace vek
