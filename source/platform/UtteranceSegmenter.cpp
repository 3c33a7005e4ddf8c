// SPDX-License-Identifier: MIT
#include "platform/UtteranceSegmenter.hpp"

#include <algorithm>
#include <limits>
#include <numeric>

namespace vek {
namespace {

constexpr std::size_t milliseconds(std::size_t count) {
  return count * speechSampleRate / 1000;
}
constexpr std::size_t frames(std::size_t samples) {
  return (samples + speechFrameLength - 1) / speechFrameLength;
}

// Speech begins above the one and goes on until it falls below the other.
constexpr float beginProbability = 0.5F;
constexpr float endProbability = 0.35F;

// An utterance that begins with speech at once is often not understood at all.
constexpr std::size_t leadIn = milliseconds(500);
constexpr std::size_t leadInAfterSplit = milliseconds(300);
constexpr std::size_t tail = milliseconds(300);
constexpr std::size_t pauseFrames = frames(tail);
constexpr std::size_t endFrames = frames(milliseconds(600));
// A click is shorter than any word.
constexpr std::size_t minimalSpeechFrames = frames(milliseconds(100));
constexpr std::size_t maximalLength = milliseconds(12'000);
constexpr std::size_t splitWindow = milliseconds(4'000);

}  // namespace

UtteranceSegmenter::UtteranceSegmenter() : samples_(leadIn) {}

UtteranceSegmenter::Event UtteranceSegmenter::add(SpeechFrame frame, float speechProbability) {
  if (complete_ > 0) beginAnew();
  if (speechProbability >= beginProbability) {
    isSpeaking_ = true;
    silentFrames_ = 0;
    speechFrames_.push_back(samples_.size());
  } else if (isSpeaking_ && (silentFrames_ > 0 || speechProbability < endProbability)) {
    ++silentFrames_;
  }
  samples_.insert(samples_.end(), frame.begin(), frame.end());
  received_ += frame.size();

  if (!isSpeaking_) {
    samples_.erase(samples_.begin(), samples_.end() - leadIn);
    return Event::silence;
  }
  bool const isTooLong = samples_.size() >= maximalLength;
  if (!isUtterance()) {
    if (hasPaused() || isTooLong) forget();
    return Event::silence;
  }
  if (hasPaused()) return endAt(utterance().size());
  if (isTooLong) {
    wasSplit_ = true;
    return endAt(quietestMoment());
  }
  if (silentFrames_ == 0) return Event::speech;
  return silentFrames_ == pauseFrames ? Event::pause : Event::silence;
}

bool UtteranceSegmenter::finish() {
  if (complete_ > 0) beginAnew();
  if (!isUtterance()) return false;
  endAt(utterance().size());
  return true;
}

std::span<float const> UtteranceSegmenter::utterance() const {
  if (complete_ > 0) return std::span(samples_).first(complete_);
  std::size_t const silence = silentFrames_ * speechFrameLength;
  return std::span(samples_).first(samples_.size() - (silence > tail ? silence - tail : 0));
}

std::chrono::milliseconds UtteranceSegmenter::speechStart() const {
  return std::chrono::milliseconds((received_ + speechFrames_.front() - samples_.size()) * 1000 /
                                   speechSampleRate);
}

std::chrono::milliseconds UtteranceSegmenter::speechDuration() const {
  auto const last = std::ranges::lower_bound(speechFrames_, utterance().size()) - 1;
  return std::chrono::milliseconds((*last + speechFrameLength - speechFrames_.front()) * 1000 /
                                   speechSampleRate);
}

bool UtteranceSegmenter::hasPaused() const {
  return silentFrames_ >= endFrames;
}

bool UtteranceSegmenter::isUtterance() const {
  return speechFrames_.size() >= minimalSpeechFrames;
}

UtteranceSegmenter::Event UtteranceSegmenter::endAt(std::size_t length) {
  complete_ = length;
  return Event::end;
}

void UtteranceSegmenter::forget() {
  speechFrames_.clear();
  silentFrames_ = 0;
  isSpeaking_ = false;
}

/// The middle of the quietest three frames among the last seconds, where a cut hurts least.
std::size_t UtteranceSegmenter::quietestMoment() const {
  constexpr std::size_t window = 3 * speechFrameLength;
  std::size_t moment = samples_.size();
  float lowest = std::numeric_limits<float>::max();
  for (std::size_t begin = samples_.size() - splitWindow; begin + window <= samples_.size();
       begin += speechFrameLength) {
    auto const part = std::span(samples_).subspan(begin, window);
    float const energy = std::inner_product(part.begin(), part.end(), part.begin(), 0.0F);
    if (energy >= lowest) continue;
    lowest = energy;
    moment = begin + window / 2;
  }
  return moment;
}

/// Keeps what came after the utterance that has ended: the lead-in of the next one, or after a
/// split its first words.
void UtteranceSegmenter::beginAnew() {
  std::size_t const rest = samples_.size() - complete_;
  std::size_t const silence =
      std::max(wasSplit_ ? leadInAfterSplit : 0, leadIn - std::min(leadIn, rest));
  samples_.erase(samples_.begin(), samples_.end() - static_cast<std::ptrdiff_t>(rest));
  samples_.insert(samples_.begin(), silence, 0.0F);

  std::erase_if(speechFrames_, [&](std::size_t frame) { return frame < complete_; });
  for (std::size_t& frame : speechFrames_) frame = frame - complete_ + silence;
  isSpeaking_ = !speechFrames_.empty();
  if (!isSpeaking_) silentFrames_ = 0;
  complete_ = 0;
  wasSplit_ = false;
}

}  // namespace vek
