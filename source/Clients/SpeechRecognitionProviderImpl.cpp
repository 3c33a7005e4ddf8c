// SPDX-License-Identifier: MIT
#include "Clients/SpeechRecognitionProviderImpl.hpp"

#include "runtime/ThreadPool.hpp"

namespace vek {
namespace {

template <SpeechRecognitionProviderProtocol Client>
SpeechRecognitionProvider forwarding(Client const& client) {
  return {.hasPermission = client.hasPermission,
          .requestPermission = client.requestPermission,
          .startRecording = client.startRecording,
          .stopRecording = client.stopRecording};
}

}  // namespace

SpeechRecognitionProvider SpeechRecognitionProviderImpl::chosenClient() const {
  if (readSetting_() == RecognitionProvider::deepgram)
    return forwarding(*remoteRecognizer_.value());
  return forwarding(*localRecognizer_.value());
}

Task<bool> SpeechRecognitionProviderImpl::hasPermission() {
  auto const client = chosenClient();
  co_return co_await client.hasPermission();
}

Task<bool> SpeechRecognitionProviderImpl::requestPermission() {
  auto const client = chosenClient();
  co_return co_await client.requestPermission();
}

Task<Stream<RecordingTranscript>> SpeechRecognitionProviderImpl::startRecording() {
  auto const client = chosenClient();
  {
    std::lock_guard const lock(mutex_);
    currentProvider_ = client;
  }
  co_return co_await client.startRecording();
}

Task<> SpeechRecognitionProviderImpl::stopRecording() {
  std::optional<SpeechRecognitionProvider> client;
  {
    std::lock_guard const lock(mutex_);
    client = currentProvider_;
  }
  if (!client) co_return;
  co_await client->stopRecording();
  std::lock_guard const lock(mutex_);
  currentProvider_.reset();
}

SpeechRecognitionProvider SpeechRecognitionProviderImpl::client(
    std::shared_ptr<SpeechRecognitionProviderImpl> impl) {
  // The setting and the models are files: nothing of this runs on the main thread.
  auto& pool = ThreadPool::shared();
  return {.hasPermission = [impl, &pool] { return on(pool, impl->hasPermission()); },
          .requestPermission = [impl, &pool] { return on(pool, impl->requestPermission()); },
          .startRecording = [impl, &pool] { return on(pool, impl->startRecording()); },
          .stopRecording = [impl, &pool] { return on(pool, impl->stopRecording()); }};
}

SpeechRecognitionProvider SpeechRecognitionProviderKey::liveValue() {
  return SpeechRecognitionProviderImpl::client(std::make_shared<SpeechRecognitionProviderImpl>());
}

}  // namespace vek
