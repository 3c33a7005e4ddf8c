// SPDX-License-Identifier: MIT
#include "platform/SecretServiceKeychainStore.hpp"

#include <gio/gio.h>

#include <future>
#include <memory>
#include <utility>

#include "platform/KeychainStatus.hpp"
#include "platform/Log.hpp"
#include "platform/SecretServiceSession.hpp"

namespace vek {
namespace {

/// For what was cancelled to come back.
constexpr std::chrono::seconds grace{1};

}  // namespace

SecretServiceKeychainStore::SecretServiceKeychainStore(std::chrono::milliseconds limit)
    : limit_(limit) {}

SecretServiceKeychainStore::~SecretServiceKeychainStore() {
  thread_.post([this] { bus_.disconnect(); });
}

SecretServiceKeychainStore::Answer SecretServiceKeychainStore::perform(Operation operation) {
  {
    std::lock_guard const lock(mutex_);
    if (isAbsent_) return {errSecNotAvailable};
  }
  std::shared_ptr<GCancellable> const cancellable(g_cancellable_new(), g_object_unref);
  auto const promise = std::make_shared<std::promise<Answer>>();
  auto answer = promise->get_future();
  thread_.post([this, cancellable, promise, operation = std::move(operation)] {
    promise->set_value(run(operation, cancellable.get()));
  });
  if (answer.wait_for(limit_) == std::future_status::ready) return answer.get();
  g_cancellable_cancel(cancellable.get());
  if (answer.wait_for(grace) == std::future_status::ready) return answer.get();
  Logger("Keychain").error("The Secret Service does not answer");
  return {errSecIO};
}

SecretServiceKeychainStore::Answer SecretServiceKeychainStore::run(Operation const& operation,
                                                                   GCancellable* cancellable) {
  Answer answer;
  try {
    bus_.connect(cancellable);
    SecretServiceSession session(cancellable);
    operation(session, answer);
  } catch (KeychainFailure const& failure) {
    answer.status = failure.status;
  }
  if (answer.status == errSecNotAvailable) {
    std::lock_guard const lock(mutex_);
    isAbsent_ = true;
  }
  return answer;
}

std::int32_t SecretServiceKeychainStore::change(
    std::function<void(SecretServiceSession&)> operation) {
  Answer const answer =
      perform([this, operation = std::move(operation)](SecretServiceSession& session, Answer&) {
        forget();
        operation(session);
      });
  return answer.status;
}

std::int32_t SecretServiceKeychainStore::add(Key const& key, std::string const& bytes) {
  return change([key, bytes](SecretServiceSession& session) { session.add(key, bytes); });
}

std::int32_t SecretServiceKeychainStore::replace(Key const& key, std::string const& bytes) {
  return change([key, bytes](SecretServiceSession& session) { session.replace(key, bytes); });
}

std::int32_t SecretServiceKeychainStore::remove(std::string const& service,
                                                std::optional<std::string> const& account) {
  return change(
      [service, account](SecretServiceSession& session) { session.remove(service, account); });
}

std::int32_t SecretServiceKeychainStore::read(Key const& key, std::string& bytes) {
  {
    std::lock_guard const lock(mutex_);
    if (auto const found = remembered_.find(key); found != remembered_.end()) {
      bytes = found->second.bytes;
      return found->second.status;
    }
  }
  // Remembered on the thread, on which word of a later change comes after it.
  Answer answer = perform([this, key](SecretServiceSession& session, Answer& found) {
    try {
      found.bytes = session.read(key);
    } catch (KeychainFailure const& failure) {
      if (failure.status != errSecInteractionNotAllowed) throw;
      found.status = failure.status;
    }
    std::lock_guard const lock(mutex_);
    remembered_.insert_or_assign(key, found);
  });
  bytes = std::move(answer.bytes);
  return answer.status;
}

std::int32_t SecretServiceKeychainStore::list(std::string const& service,
                                              std::vector<std::string>& accounts) {
  Answer answer = perform([service](SecretServiceSession& session, Answer& found) {
    found.accounts = session.list(service);
  });
  accounts = std::move(answer.accounts);
  return answer.status;
}

void SecretServiceKeychainStore::forget() {
  std::lock_guard const lock(mutex_);
  remembered_.clear();
  isAbsent_ = false;
}

}  // namespace vek
