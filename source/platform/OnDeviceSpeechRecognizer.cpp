// SPDX-License-Identifier: MIT
#include "platform/OnDeviceSpeechRecognizer.hpp"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <utility>

#include "platform/Deployment.hpp"
#include "platform/Log.hpp"
#include "platform/MicrophoneRules.hpp"
#include "platform/OnnxSpeechModels.hpp"
#include "platform/SpeechModelFiles.hpp"
#include "platform/SpeechTranscriber.hpp"

namespace vek {
namespace {

using Status = SpeechRecognizerAuthorizationStatus;
using Buffer = SpeechAudioBufferRecognitionRequest::Buffer;

Locale usEnglish() {
  return Locale("en-US");
}

// More audio than this waiting means that the recogniser does not keep up.
constexpr std::chrono::microseconds tolerableBacklog = std::chrono::milliseconds(300);

std::chrono::microseconds duration(AudioPCMBuffer const& buffer) {
  std::chrono::duration<double> const seconds(static_cast<double>(buffer.frameLength()) /
                                              buffer.format().sampleRate());
  return std::chrono::duration_cast<std::chrono::microseconds>(seconds);
}

/// A task: what comes in on any thread is worked off on the engine's.
class OnDeviceTask final : public SpeechRecognitionTask,
                           public std::enable_shared_from_this<OnDeviceTask> {
 public:
  OnDeviceTask(std::weak_ptr<SpeechEngine> engine, SpeechRecognitionResultHandler handler)
      : engine_(std::move(engine)), transcriber_(std::move(handler)) {}

  void append(Buffer buffer) {
    auto const length = duration(*buffer).count();
    backlog_ += length;
    post([this, buffer = std::move(buffer), length](SpeechModels& models,
                                                    std::stop_token const& stop) {
      backlog_ -= length;
      transcriber_.process(models, *buffer, pace(), stop);
    });
  }

  void finish() override {
    isFinishing_ = true;
    post([this](SpeechModels& models, std::stop_token const& stop) {
      transcriber_.finish(models, stop);
    });
  }

 private:
  /// Everything posted holds the task.
  template <class Run>
  void post(Run run) {
    auto const engine = engine_.lock();
    if (!engine) return;
    engine->post(
        {.run = [self = shared_from_this(), run = std::move(run)](
                    SpeechModels& models, std::stop_token const& stop) { run(models, stop); },
         .fail = [self = shared_from_this()](
                     std::exception_ptr const& error) { self->transcriber_.fail(error); }});
  }

  /// Progress is of no interest while more audio waits, or the final result is asked for.
  [[nodiscard]] SpeechTranscriber::Pace pace() const {
    bool const keepsUp = !isFinishing_ && backlog_ < tolerableBacklog.count();
    return keepsUp ? SpeechTranscriber::Pace::keepsUp : SpeechTranscriber::Pace::isBehind;
  }

  std::weak_ptr<SpeechEngine> engine_;
  std::atomic<bool> isFinishing_ = false;
  std::atomic<std::chrono::microseconds::rep> backlog_ = 0;
  SpeechTranscriber transcriber_;  // of the engine's thread
};

class OnDeviceSpeechRecognizer final : public SpeechRecognizer {
 public:
  OnDeviceSpeechRecognizer(std::shared_ptr<SpeechEngine> engine,
                           std::function<std::optional<std::string>()> problem)
      : engine_(std::move(engine)), problem_(std::move(problem)) {}

  [[nodiscard]] bool isAvailable() const override {
    auto const problem = problem_();
    if (problem) Logger("speech recognizer").error(*problem);
    return !problem;
  }

  std::shared_ptr<SpeechRecognitionTask> recognitionTask(
      std::shared_ptr<SpeechAudioBufferRecognitionRequest> const& request,
      SpeechRecognitionResultHandler resultHandler) override {
    auto const task = std::make_shared<OnDeviceTask>(engine_, std::move(resultHandler));
    request->setReceiver([task](Buffer buffer) { task->append(std::move(buffer)); });
    return task;
  }

 private:
  std::shared_ptr<SpeechEngine> engine_;
  std::function<std::optional<std::string>()> problem_;
};

/// The installed models. Their sums are compared once, and again when a file has changed.
class InstalledModels {
 public:
  explicit InstalledModels(std::filesystem::path const& folder) : files_(folder) {}

  [[nodiscard]] std::unique_ptr<SpeechModels> load() const { return loadOnnxSpeechModels(files_); }

  [[nodiscard]] std::optional<std::string> problem() {
    if (auto problem = files_.problem()) return problem;
    auto fingerprint = files_.fingerprint();
    std::lock_guard const lock(mutex_);
    if (!checked_ || checked_->fingerprint != fingerprint) {
      checked_ = Check{std::move(fingerprint), damage()};
    }
    return checked_->problem;
  }

 private:
  struct Check {
    std::string fingerprint;
    std::optional<std::string> problem;
  };

  [[nodiscard]] std::optional<std::string> damage() const {
    try {
      files_.verify();
      return std::nullopt;
    } catch (SpeechModelError const& error) {
      return error.what();
    }
  }

  SpeechModelFiles files_;
  std::mutex mutex_;
  std::optional<Check> checked_;
};

/// Who may not use the microphone may not have it turned into text either.
Status microphoneStatus() {
  return isMicrophoneAllowed() ? Status::authorized : Status::denied;
}

OnDeviceSpeechParts parts(std::shared_ptr<SpeechEngine> engine,
                          std::shared_ptr<InstalledModels> const& models,
                          std::function<Status()> authorizationStatus) {
  return {.engine = std::move(engine),
          .problem = [models] { return models->problem(); },
          .authorizationStatus = std::move(authorizationStatus)};
}

/// The engine of this process; null until it is asked for.
std::shared_ptr<SpeechEngine>& sharedEngine() {
  static std::shared_ptr<SpeechEngine> engine;
  return engine;
}

}  // namespace

SpeechRecognizerOperations onDeviceSpeechRecognizer(OnDeviceSpeechParts parts) {
  return {
      .authorizationStatus = parts.authorizationStatus,
      // There is nobody to ask: what the system allows is known at once.
      .requestAuthorization = [status = parts.authorizationStatus](
                                  std::function<void(Status)> const& answer) { answer(status()); },
      .supportedLocales = [] { return std::vector{usEnglish()}; },
      .make = [parts](Locale const& locale) -> std::shared_ptr<SpeechRecognizer> {
        if (locale != usEnglish()) return nullptr;
        return std::make_shared<OnDeviceSpeechRecognizer>(parts.engine, parts.problem);
      }};
}

OnDeviceSpeechParts installedSpeechParts(std::filesystem::path const& folder,
                                         std::chrono::milliseconds keepModelsFor) {
  auto const models = std::make_shared<InstalledModels>(folder);
  auto const load = [models] { return models->load(); };
  return parts(std::make_shared<SpeechEngine>(load, keepModelsFor), models,
               [] { return Status::authorized; });
}

SpeechRecognizerOperations const& sharedSpeechRecognizer() {
  static auto const models = std::make_shared<InstalledModels>(deployment().modelsFolder);
  static auto& engine = sharedEngine();
  static SpeechRecognizerOperations const operations = [] {
    auto const load = [] {
      auto loaded = models->load();
      // Registered behind what the library registers for its own end, and so called before it.
      [[maybe_unused]] static int const registered = std::atexit([] { engine->stop(); });
      return loaded;
    };
    engine = std::make_shared<SpeechEngine>(load, keepSpeechModelsFor);
    return onDeviceSpeechRecognizer(parts(engine, models, microphoneStatus));
  }();
  return operations;
}

void stopSharedSpeechRecognizer() {
  if (auto const engine = sharedEngine()) engine->stop();
}

}  // namespace vek
