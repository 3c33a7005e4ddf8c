// SPDX-License-Identifier: MIT
#include "platform/SpeechTranscriber.hpp"

#include <algorithm>
#include <utility>

namespace vek {
namespace {

using Seconds = std::chrono::duration<double>;

// Of less audio than this the models may invent a text.
constexpr Seconds firstProgressAfter{1.0};
constexpr Seconds progressInterval{0.6};
// Long utterances take long to transcribe: most of the time must be left for everything else.
constexpr double restPerCost = 2.5;
constexpr Seconds tolerableBacklog{0.3};
constexpr std::size_t padding = speechSampleRate / 2;

Seconds seconds(std::size_t samples) {
  return Seconds(static_cast<double>(samples) / speechSampleRate);
}

}  // namespace

void SpeechTranscriber::process(SpeechModels& models, AudioPCMBuffer const& buffer, Pace pace,
                                std::stop_token const& stop) {
  if (hasEnded_) return;
  resampler_.process(buffer, samples_);
  std::span<float const> rest = samples_;
  while (rest.size() >= speechFrameLength) {
    // A long buffer is a backlog of its own.
    bool const isNearEnd = seconds(rest.size()) < tolerableBacklog;
    processFrame(models, rest.first<speechFrameLength>(), isNearEnd ? pace : Pace::isBehind, stop);
    rest = rest.subspan(speechFrameLength);
  }
  samples_.erase(samples_.begin(), samples_.end() - static_cast<std::ptrdiff_t>(rest.size()));
}

void SpeechTranscriber::processFrame(SpeechModels& models, SpeechFrame frame, Pace pace,
                                     std::stop_token const& stop) {
  using Event = UtteranceSegmenter::Event;
  Event const event = segmenter_.add(frame, models.speechProbability(activity_, frame));
  if (event == Event::end) {
    auto const result = settle(models, stop);
    // A noise that was taken for speech is not worth a result.
    if (!result.bestTranscription.formattedString.empty()) resultHandler_(result, nullptr);
    beginNextText();
  } else if (pace == Pace::keepsUp &&
             (event == Event::pause || (event == Event::speech && isDue()))) {
    showProgress(models, stop);
  }
}

bool SpeechTranscriber::isDue() const {
  std::size_t const length = segmenter_.utterance().size();
  return seconds(length) >= firstProgressAfter &&
         seconds(length - transcribedLength_) >= std::max(progressInterval, cost_ * restPerCost);
}

void SpeechTranscriber::transcribe(SpeechModels& models, std::stop_token const& stop) {
  auto const begin = Clock::now();
  auto const utterance = segmenter_.utterance();
  std::string text = models.transcribe(utterance, stop);
  // Rather a text that came late than none: where nothing is understood now, the last one holds.
  if (!text.empty()) text_ = std::move(text);
  transcribedLength_ = utterance.size();
  cost_ = Clock::now() - begin;
}

void SpeechTranscriber::showProgress(SpeechModels& models, std::stop_token const& stop) {
  transcribe(models, stop);
  if (text_ == shown_) return;
  shown_ = text_;
  resultHandler_(SpeechRecognitionResult{{text_}, false, std::nullopt}, nullptr);
}

/// The settled text. What was transcribed when the pause began is not transcribed again.
SpeechRecognitionResult SpeechTranscriber::settle(SpeechModels& models,
                                                  std::stop_token const& stop) {
  auto const utterance = segmenter_.utterance();
  if (transcribedLength_ != utterance.size()) transcribe(models, stop);
  if (text_.empty()) {
    std::vector<float> padded(utterance.size() + 2 * padding);
    std::ranges::copy(utterance, padded.begin() + padding);
    text_ = models.transcribe(padded, stop);
  }
  return {{text_},
          false,
          SpeechRecognitionMetadata{segmenter_.speechStart(), segmenter_.speechDuration(),
                                    segmenter_.hasPaused()}};
}

void SpeechTranscriber::beginNextText() {
  text_.clear();
  shown_.clear();
  transcribedLength_ = 0;
}

void SpeechTranscriber::finish(SpeechModels& models, std::stop_token const& stop) {
  if (hasEnded_) return;
  if (!samples_.empty()) {
    samples_.resize(speechFrameLength);
    processFrame(models, std::span(samples_).first<speechFrameLength>(), Pace::isBehind, stop);
  }
  SpeechRecognitionResult result{{}, false, SpeechRecognitionMetadata{}};
  if (segmenter_.finish()) result = settle(models, stop);
  result.isFinal = true;
  hasEnded_ = true;
  resultHandler_(result, nullptr);
}

void SpeechTranscriber::fail(std::exception_ptr const& error) {
  if (std::exchange(hasEnded_, true)) return;
  resultHandler_(std::nullopt, error);
}

}  // namespace vek
