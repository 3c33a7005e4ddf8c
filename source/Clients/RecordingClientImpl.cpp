// SPDX-License-Identifier: MIT
#include "Clients/RecordingClientImpl.hpp"

#include <fmt/format.h>

#include <exception>
#include <utility>

#include "Clients/RemoteSpeechRecognitionError.hpp"
#include "platform/NotificationCenter.hpp"
#include "platform/PulseAudioEngine.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {

namespace {

constexpr std::size_t tapBufferSize = 1024;

RecordingClient operations(std::shared_ptr<RecordingClientImpl> const& client) {
  return {.startRecording = [client] { return client->startRecording(); },
          .stopRecording = [client] { client->stopRecording(); }};
}

}  // namespace

RecordingClientImpl::RecordingClientImpl(AudioEngineFactory makeEngine)
    : makeEngine_(std::move(makeEngine)) {}

RecordingClientImpl::~RecordingClientImpl() {
  stopObserving();
  handler_ = nullptr;
  audioEngine_ = nullptr;
  converterNode_ = nullptr;
  sinkNode_ = nullptr;
  // Work that runs on the queue may hold the last reference, and a queue can't wait for itself.
  if (queue_ && queue_->isCurrent()) {
    ThreadPool::shared().post([queue = std::move(queue_)]() mutable { queue = nullptr; });
  }
}

std::shared_ptr<SerialQueue> const& RecordingClientImpl::queue() {
  std::call_once(queueMade_,
                 [this] { queue_ = std::make_shared<SerialQueue>("com.vek.app.recorder.queue"); });
  return queue_;
}

Logger const& RecordingClientImpl::logger() {
  std::call_once(loggerMade_, [this] { logger_ = std::make_shared<Logger const>("recorder"); });
  return *logger_;
}

AudioEngine& RecordingClientImpl::audioEngine() {
  if (!audioEngine_) audioEngine_ = makeEngine_();
  return *audioEngine_;
}

RecordingClient::Buffers RecordingClientImpl::startRecording() {
  auto ends = RecordingClient::Buffers::makeStream();
  auto const continuation = ends.continuation;
  setHandler([continuation](Result<Buffer> result) {
    if (result) {
      continuation.yield(std::move(result).value());
    } else {
      continuation.finish(result.error());
    }
  });
  try {
    queue()->sync([weak = weak_from_this()] {
      if (auto const self = weak.lock()) self->startEngine();
    });
  } catch (...) {
    continuation.finish(std::current_exception());
  }
  return std::move(ends.stream);
}

void RecordingClientImpl::startEngine() {
  observeDeviceChanges();
  audioEngine_ = makeEngine_();
  buildGraph();
  try {
    audioEngine().start();
  } catch (std::exception const& error) {
    logger().error(fmt::format("engine couldn't start: {}", error.what()));
    throw RemoteSpeechRecognitionError(RemoteSpeechRecognitionError::audioEngineError);
  }
}

void RecordingClientImpl::stopRecording() {
  stopObserving();
  queue()->post([weak = weak_from_this()] {
    auto const self = weak.lock();
    if (!self) return;
    self->tearDownGraph();
    try {
      self->audioEngine().stop();
    } catch (std::exception const& error) {
      self->logger().error(fmt::format("engine couldn't stop: {}", error.what()));
    }
  });
}

void RecordingClientImpl::shutDown() {
  if (!queue_) return;
  stopRecording();
  queue_->sync([] {});
}

void RecordingClientImpl::observeDeviceChanges() {
  logger();
  // Runs on the engine's thread, which must neither wait nor hold this object.
  NotificationCenter::defaultCenter().addObserver(
      this, AudioEngineConfigurationChangeNotification,
      [weak = weak_from_this(), queue = queue(), logger = logger_](Notification const& change) {
        logger->debug([&] { return fmt::format("Audio device changed: {}", change.name); });
        queue->post([weak] {
          if (auto const self = weak.lock()) self->restartAfterDeviceChange();
        });
      });
}

void RecordingClientImpl::stopObserving() {
  NotificationCenter::defaultCenter().removeObserver(this,
                                                     AudioEngineConfigurationChangeNotification);
}

void RecordingClientImpl::restartAfterDeviceChange() {
  // Told in the moment of a stop, whose work came first: the microphone stays off.
  if (!converterNode_) return;
  auto& engine = audioEngine();
  try {
    engine.stop();
    engine.inputNode().removeTap(0);
    buildGraph();
    engine.start();
  } catch (std::exception const& error) {
    logger().error(fmt::format("device did change but engine couldn't start: {}", error.what()));
    handle(std::current_exception());
  }
}

void RecordingClientImpl::buildGraph() {
  auto& engine = audioEngine();
  if (engine.isRunning()) return;
  tearDownGraph();

  auto& inputNode = engine.inputNode();
  auto const inputFormat = inputNode.inputFormat(0);
  auto const converterNode = std::make_shared<AudioMixerNode>();
  auto const sinkNode = std::make_shared<AudioMixerNode>();
  engine.attachNode(converterNode);
  engine.attachNode(sinkNode);

  AudioFormat const outputFormat(AudioCommonFormat::pcmFormatInt16, inputFormat.sampleRate(),
                                 inputFormat.channelCount(), true);
  engine.connect(inputNode, *converterNode, inputFormat);
  engine.connect(*converterNode, *sinkNode, outputFormat);
  converterNode->installTap(0, tapBufferSize, converterNode->outputFormat(0),
                            [weak = weak_from_this(), queue = queue()](Buffer buffer, AudioTime) {
                              queue->post([weak, buffer = std::move(buffer)]() mutable {
                                if (auto const self = weak.lock()) self->handle(std::move(buffer));
                              });
                            });

  converterNode_ = converterNode;
  sinkNode_ = sinkNode;
  engine.prepare();
}

void RecordingClientImpl::tearDownGraph() {
  if (auto const node = std::exchange(converterNode_, nullptr)) {
    node->removeTap(0);
    audioEngine().detachNode(*node);
  }
  if (auto const node = std::exchange(sinkNode_, nullptr)) audioEngine().detachNode(*node);
}

void RecordingClientImpl::setHandler(Handler handler) {
  auto shared = std::make_shared<Handler const>(std::move(handler));
  std::lock_guard lock(handlerMutex_);
  handler_ = std::move(shared);
}

void RecordingClientImpl::handle(Result<Buffer> result) {
  std::shared_ptr<Handler const> handler;
  {
    std::lock_guard lock(handlerMutex_);
    handler = handler_;
  }
  if (handler) (*handler)(std::move(result));
}

RecordingClient makeRecordingClient(AudioEngineFactory makeEngine) {
  return operations(std::make_shared<RecordingClientImpl>(std::move(makeEngine)));
}

RecordingClient RecordingClientKey::liveValue() {
  // The container never lets go of its values; the engine's threads must end before static objects.
  struct Live {
    ThreadPool& outlivesThis = ThreadPool::shared();
    std::shared_ptr<RecordingClientImpl> client =
        std::make_shared<RecordingClientImpl>(pulseAudioEngineFactory());
    ~Live() { client->shutDown(); }
  };
  static Live const live;
  return operations(live.client);
}

}  // namespace vek
