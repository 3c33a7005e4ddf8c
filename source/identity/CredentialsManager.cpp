// SPDX-License-Identifier: MIT
#include "identity/CredentialsManager.hpp"

#include <exception>
#include <set>
#include <sstream>
#include <utility>

#include "identity/CredentialsArchive.hpp"
#include "identity/CredentialsManagerError.hpp"
#include "platform/Keychain.hpp"
#include "platform/KeychainLock.hpp"
#include "runtime/CallbackOperation.hpp"

namespace vek {
namespace {

using Code = CredentialsManagerError::Code;

std::set<std::string> wordsOf(std::string const& scope) {
  std::istringstream stream(scope);
  return {std::istream_iterator<std::string>(stream), {}};
}

std::exception_ptr failure(Code code, std::exception_ptr cause = nullptr) {
  return std::make_exception_ptr(CredentialsManagerError(code, std::move(cause)));
}

bool store(CredentialsStorage const& storage, std::string const& key,
           Credentials const& credentials) {
  auto const bytes = CredentialsArchive::archive(credentials);
  return bytes && storage.writeEntry(*bytes, key);
}

/// One call for credentials. It holds the group, and while it renews also the lock that other
/// programs respect.
class Retrieval : public std::enable_shared_from_this<Retrieval> {
 public:
  Retrieval(CredentialsManager const& manager, std::optional<std::string> scope,
            std::chrono::seconds minTTL, boost::json::object parameters,
            std::map<std::string, std::string> headers, CredentialsManager::Callback callback)
      : storage_(manager.storage),
        storeKey_(manager.storeKey),
        authentication_(manager.authentication),
        group_(manager.dispatchGroup),
        scope_(std::move(scope)),
        minTTL_(minTTL),
        parameters_(std::move(parameters)),
        headers_(std::move(headers)),
        callback_(std::move(callback)),
        deadline_(std::chrono::steady_clock::now() + manager.patience) {}

  /// On the queue.
  void run() {
    group_->wait();
    group_->enter();
    auto stored = read();
    if (auto const outcome = outcomeWithoutRenewal(stored)) return end(*outcome);
    try {
      // What passed in the queue counts: a program that has stopped is waited for once, not by one
      // caller after the other.
      lock_.emplace(storeKey_, std::chrono::ceil<std::chrono::milliseconds>(
                                   deadline_ - std::chrono::steady_clock::now()));
    } catch (std::system_error const&) {
      return end(failure(Code::renewFailed, std::current_exception()));
    }
    // Whoever had the lock before may have renewed them, and their refresh token is spent then.
    stored = read();
    if (auto const outcome = outcomeWithoutRenewal(stored)) return end(*outcome);
    renew(*stored);
  }

 private:
  [[nodiscard]] std::optional<Credentials> read() const {
    auto const bytes = storage_->readEntry(storeKey_);
    return bytes ? CredentialsArchive::unarchive(*bytes) : std::nullopt;
  }

  /// Nothing when a renewal has to tell.
  [[nodiscard]] std::optional<Result<Credentials>> outcomeWithoutRenewal(
      std::optional<Credentials> const& stored) const {
    if (!stored) return failure(Code::noCredentials);
    if (isUsable(*stored)) return *stored;
    if (!stored->refreshToken()) return failure(Code::noRefreshToken);
    return std::nullopt;
  }

  [[nodiscard]] bool isUsable(Credentials const& credentials) const {
    bool const hasScopeChanged =
        scope_ && wordsOf(*scope_) != wordsOf(credentials.scope().value_or(""));
    return !endsTooEarly(credentials, std::chrono::seconds(0)) &&
           !endsTooEarly(credentials, minTTL_) && !hasScopeChanged;
  }

  static bool endsTooEarly(Credentials const& credentials, std::chrono::seconds minTTL) {
    return credentials.expiresIn() < std::chrono::system_clock::now() + minTTL;
  }

  void renew(Credentials const& old) {
    authentication_.renew(*old.refreshToken(), scope_)
        .parameters(parameters_)
        .headers(headers_)
        .start([self = shared_from_this(), old](Result<Credentials> const& answer) {
          self->end(answer ? self->outcomeOfRenewal(old, answer.value())
                           : failure(Code::renewFailed, answer.error()));
        });
  }

  [[nodiscard]] Result<Credentials> outcomeOfRenewal(Credentials const& old,
                                                     Credentials const& answer) const {
    Credentials const renewed(
        {.accessToken = answer.accessToken(),
         .tokenType = answer.tokenType(),
         .expiresIn = answer.expiresIn(),
         .refreshToken = answer.refreshToken() ? answer.refreshToken() : old.refreshToken(),
         .idToken = answer.idToken(),
         .scope = answer.scope(),
         .recoveryCode = answer.recoveryCode()});
    if (endsTooEarly(renewed, minTTL_)) {
      auto const lifetime = std::chrono::duration_cast<std::chrono::seconds>(
          renewed.expiresIn() - std::chrono::system_clock::now());
      return std::make_exception_ptr(CredentialsManagerError::largeMinTTL(minTTL_, lifetime));
    }
    // Who logs out, or in again, does not wait for the lock, and has the last word.
    Keychain::shared().forget();
    auto const current = read();
    if (!current) return failure(Code::noCredentials);
    if (current->refreshToken() != old.refreshToken()) return *current;
    if (!store(*storage_, storeKey_, renewed)) return failure(Code::storeFailed);
    return renewed;
  }

  void end(Result<Credentials> const& outcome) {
    lock_.reset();
    group_->leave();
    callback_(outcome);
  }

  std::shared_ptr<CredentialsStorage const> storage_;
  std::string storeKey_;
  Auth0Authentication authentication_;
  std::shared_ptr<DispatchGroup> group_;
  std::optional<std::string> scope_;
  std::chrono::seconds minTTL_;
  boost::json::object parameters_;
  std::map<std::string, std::string> headers_;
  CredentialsManager::Callback callback_;
  std::chrono::steady_clock::time_point deadline_;
  std::optional<KeychainLock> lock_;
};

Task<Credentials> retrieve(CredentialsManager manager, std::optional<std::string> scope,
                           std::chrono::seconds minTTL, boost::json::object parameters,
                           std::map<std::string, std::string> headers) {
  co_return co_await callbackOperation<Credentials>([&](Completion<Credentials> completion) {
    manager.credentials(std::move(scope), minTTL, std::move(parameters), std::move(headers),
                        [completion = std::move(completion)](Result<Credentials> outcome) {
                          if (outcome) {
                            completion.resolve(std::move(outcome).value());
                          } else {
                            completion.reject(outcome.error());
                          }
                        });
  });
}

}  // namespace

bool CredentialsManager::store(Credentials const& credentials) const {
  return vek::store(*storage, storeKey, credentials);
}

void CredentialsManager::credentials(std::optional<std::string> scope, std::chrono::seconds minTTL,
                                     boost::json::object parameters,
                                     std::map<std::string, std::string> headers,
                                     Callback callback) const {
  auto const retrieval =
      std::make_shared<Retrieval>(*this, std::move(scope), minTTL, std::move(parameters),
                                  std::move(headers), std::move(callback));
  dispatchQueue->post([retrieval] { retrieval->run(); });
}

Task<Credentials> CredentialsManager::credentials(
    std::optional<std::string> scope, std::chrono::seconds minTTL, boost::json::object parameters,
    std::map<std::string, std::string> headers) const {
  return retrieve(*this, std::move(scope), minTTL, std::move(parameters), std::move(headers));
}

}  // namespace vek
