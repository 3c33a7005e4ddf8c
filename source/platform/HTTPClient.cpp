// SPDX-License-Identifier: MIT
#include "platform/HTTPClient.hpp"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "platform/Deployment.hpp"
#include "platform/HTTPError.hpp"
#include "platform/HTTPLibrary.hpp"
#include "platform/HTTPTransfer.hpp"
#include "platform/OpenSSLLifetime.hpp"
#include "runtime/CallbackOperation.hpp"

namespace vek {
namespace {

constexpr long connectionsPerHost = 6;
constexpr std::size_t streamsPerHost = 256;

/// Scheme, host and port.
std::string origin(std::string_view url) {
  auto const scheme = url.find("://");
  auto const begin = scheme == std::string_view::npos ? 0 : scheme + 3;
  return std::string(url.substr(0, std::min(url.find_first_of("/?#", begin), url.size())));
}

CURLM* openMulti() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
  CURLM* multi = curl_multi_init();
  if (!multi) throw std::bad_alloc();
  curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS, connectionsPerHost);
  return multi;
}

/// The thread that does all exchanges of one client, from the first of them on. Exchanges that wait
/// for a connection wait here rather than in the library, where their time would run already.
class Transport {
 public:
  explicit Transport(HTTPClient::Options options) : options_(std::move(options)) {}
  Transport(Transport const&) = delete;
  Transport& operator=(Transport const&) = delete;
  ~Transport() {
    {
      std::lock_guard const lock(mutex_);
      stopping_ = true;
    }
    if (!thread_.joinable()) return;
    wake();
    thread_.join();
    for (auto const& [id, exchange] : active_) {
      curl_multi_remove_handle(multi_, exchange.transfer->handle());
    }
    active_.clear();
    curl_multi_cleanup(multi_);
  }

  std::uint64_t nextID() { return ++lastID_; }

  void begin(std::uint64_t id, HTTPRequest request, Completion<HTTPResponse> completion) {
    std::unique_lock lock(mutex_);
    bool const isFirst = begun_.empty() && cancelled_.empty();
    begun_.emplace(id, Waiting{std::move(request), std::move(completion)});
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
    lock.unlock();
    if (isFirst) wake();
  }

  void cancel(std::uint64_t id) {
    std::unique_lock lock(mutex_);
    bool const isFirst = begun_.empty() && cancelled_.empty();
    cancelled_.push_back(id);
    lock.unlock();
    if (isFirst) wake();
  }

 private:
  struct Waiting {
    HTTPRequest request;
    Completion<HTTPResponse> completion;
  };
  /// The exchanges with one server, in the order in which they began.
  struct Lane {
    std::map<std::uint64_t, Waiting> waiting;
    std::size_t active = 0;
    bool isMultiplexed = false;

    [[nodiscard]] bool hasRoom() const {
      return active < (isMultiplexed ? streamsPerHost : std::size_t{connectionsPerHost});
    }
  };
  struct Active {
    std::unique_ptr<HTTPTransfer> transfer;
    Completion<HTTPResponse> completion;
    Lane* lane;
  };

  /// What comes before there is something to wake is found when it first looks.
  void wake() {
    if (multi_) curl_multi_wakeup(multi_);
  }

  void run() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);  // they are the main thread's
    multi_ = openMulti();
    while (takeOver()) {
      for (auto& [server, lane] : lanes_) fill(lane);
      int running = 0;
      curl_multi_perform(multi_, &running);
      if (!collect()) curl_multi_poll(multi_, nullptr, 0, 60'000, nullptr);
    }
  }

  /// Takes what other threads left; false when the transport is to stop.
  bool takeOver() {
    std::map<std::uint64_t, Waiting> begun;
    std::vector<std::uint64_t> cancelled;
    {
      std::lock_guard const lock(mutex_);
      if (stopping_) return false;
      begun.swap(begun_);
      cancelled.swap(cancelled_);
    }
    while (!begun.empty()) {
      auto node = begun.extract(begun.begin());
      lanes_[origin(node.mapped().request.url)].waiting.insert(std::move(node));
    }
    for (auto const id : cancelled) drop(id);
    return true;
  }

  void drop(std::uint64_t id) {
    if (auto const found = active_.find(id); found != active_.end()) {
      end(found);
      return;
    }
    for (auto& [server, lane] : lanes_) {
      if (lane.waiting.erase(id) > 0) return;
    }
  }

  void fill(Lane& lane) {
    while (lane.hasRoom() && !lane.waiting.empty()) {
      auto node = lane.waiting.extract(lane.waiting.begin());
      auto& [request, completion] = node.mapped();
      auto transfer = std::make_unique<HTTPTransfer>(std::move(request), options_);
      curl_easy_setopt(transfer->handle(), CURLOPT_PRIVATE, transfer.get());
      // A further stream rather than a further connection, once the server is known to have them.
      curl_easy_setopt(transfer->handle(), CURLOPT_PIPEWAIT, long{lane.isMultiplexed});
      curl_multi_add_handle(multi_, transfer->handle());
      transfer->id = node.key();
      active_.emplace(node.key(), Active{std::move(transfer), std::move(completion), &lane});
      ++lane.active;
    }
  }

  /// Answers what has ended; false when nothing has.
  bool collect() {
    bool hasEnded = false;
    int left = 0;
    while (CURLMsg const* message = curl_multi_info_read(multi_, &left)) {
      if (message->msg != CURLMSG_DONE) continue;
      hasEnded = true;
      CURLcode const code = message->data.result;
      HTTPTransfer* transfer = nullptr;
      curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
      auto const exchange = active_.find(transfer->id);
      auto outcome = transfer->outcome(code);
      auto const completion = exchange->second.completion;
      if (outcome) exchange->second.lane->isMultiplexed = transfer->wasMultiplexed();
      end(exchange);
      if (outcome) {
        completion.resolve(std::move(outcome).value());
      } else {
        completion.reject(outcome.error());
      }
    }
    return hasEnded;
  }

  void end(std::map<std::uint64_t, Active>::iterator exchange) {
    curl_multi_remove_handle(multi_, exchange->second.transfer->handle());
    --exchange->second.lane->active;
    active_.erase(exchange);
  }

  HTTPClient::Options const options_;
  std::atomic<CURLM*> multi_ = nullptr;
  std::atomic<std::uint64_t> lastID_ = 0;

  std::mutex mutex_;
  bool stopping_ = false;
  std::map<std::uint64_t, Waiting> begun_;
  std::vector<std::uint64_t> cancelled_;

  // The thread's own.
  std::map<std::string, Lane> lanes_;
  std::map<std::uint64_t, Active> active_;

  std::thread thread_;
};

void checkHeaders(HTTPRequest const& request) {
  for (auto const& header : request.headers) {
    if (header.breaksLine()) {
      throw HTTPError(HTTPError::Code::other, "the header " + header.name + " breaks a line");
    }
  }
}

Task<HTTPResponse> send(std::shared_ptr<Transport> transport, HTTPRequest request) {
  checkHeaders(request);
  auto const id = transport->nextID();
  co_return co_await callbackOperation<HTTPResponse>(
      [&](Completion<HTTPResponse> completion) {
        transport->begin(id, std::move(request), std::move(completion));
      },
      [&] { transport->cancel(id); });
}

}  // namespace

bool HTTPHeader::breaksLine() const {
  return (name + value).find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos;
}

std::string_view HTTPResponse::header(std::string_view name) const {
  auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  for (auto const& candidate : headers) {
    if (std::ranges::equal(candidate.name, name, {}, lower, lower)) return candidate.value;
  }
  return {};
}

HTTPClient HTTPClient::make(Options options) {
  auto transport = std::make_shared<Transport>(std::move(options));
  return {[transport](HTTPRequest request) { return vek::send(transport, std::move(request)); }};
}

HTTPClient const& HTTPClient::shared() {
  static HTTPClient const client = make({.trustedAuthority = deployment().trustedAuthority});
  return client;
}

}  // namespace vek
