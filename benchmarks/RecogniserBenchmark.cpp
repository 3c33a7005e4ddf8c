// SPDX-License-Identifier: MIT
// RecogniserBenchmark FOLDER [SECONDS]
//
// How well and how fast the recogniser on this machine turns the recordings of a folder with a
// transcripts.tsv into text: first as fast as it can, then live, with all recordings appended at
// the speed at which they were spoken. SECONDS makes the live part longer, by repetition.

#include <fmt/format.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "support/RecognitionRecorder.hpp"
#include "support/SpeechSamples.hpp"
#include "support/WordErrors.hpp"

namespace {

using namespace vek;
using namespace vek::test;
using Clock = RecognitionRecorder::Clock;
using Seconds = std::chrono::duration<double>;

constexpr double sampleRate = 16000;

double seconds(std::size_t samples) {
  return static_cast<double>(samples) / sampleRate;
}

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const total = [](timeval const& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return total(usage.ru_utime) + total(usage.ru_stime);
}

long peakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

long residentMegabytes() {
  std::ifstream input("/proc/self/statm");
  long size = 0;
  long resident = 0;
  input >> size >> resident;
  return resident * 4 / 1024;
}

/// The first and the end of the last moment at which the recording is not quiet.
std::pair<double, double> speechBounds(std::vector<std::int16_t> const& samples) {
  int peak = 0;
  for (std::int16_t const sample : samples) peak = std::max(peak, std::abs(int{sample}));
  auto const isLoud = [peak](std::int16_t sample) { return std::abs(int{sample}) * 20 > peak; };
  auto const first = std::ranges::find_if(samples, isLoud);
  auto const last = std::find_if(samples.rbegin(), samples.rend(), isLoud);
  return {seconds(static_cast<std::size_t>(first - samples.begin())),
          seconds(static_cast<std::size_t>(samples.rend() - last))};
}

struct Recognition {
  explicit Recognition(SpeechRecognizerOperations const& operations) {
    request->setRequiresOnDeviceRecognition(true);
    task = operations.make(Locale("en-US"))->recognitionTask(request, recorder.handler());
  }

  void finish() const {
    task->finish();
    if (!recorder.waitForEnd(std::chrono::seconds(600))) std::exit(EXIT_FAILURE);
  }

  RecognitionRecorder recorder;
  std::shared_ptr<SpeechAudioBufferRecognitionRequest> request =
      std::make_shared<SpeechAudioBufferRecognitionRequest>();
  std::shared_ptr<SpeechRecognitionTask> task;
};

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::ranges::sort(values);
  return values[values.size() / 2];
}

void runFast(SpeechRecognizerOperations const& operations,
             std::vector<SpeechSample> const& samples) {
  std::size_t wrong = 0;
  std::size_t words = 0;
  double audio = 0;
  Recognition(operations).finish();  // loads the models
  double const before = processorSeconds();
  for (SpeechSample const& sample : samples) {
    Recognition const recognition(operations);
    for (auto const& buffer : buffersOf(sample.samples))
      recognition.request->appendAudioPCMBuffer(buffer);
    recognition.finish();
    std::string const text = recognition.recorder.settledText();
    std::size_t const errors = wrongWords(sample.transcript, text);
    fmt::print("{:2} wrong  {:26} {}\n", errors, sample.name, text);
    wrong += errors;
    words += spokenWords(sample.transcript).size();
    audio += seconds(sample.samples.size());
  }
  fmt::print("words wrong: {} of {}, {:.1f}%\n", wrong, words,
             100.0 * static_cast<double>(wrong) / static_cast<double>(words));
  fmt::print("processor time per second of audio: {:.3f} s\n",
             (processorSeconds() - before) / audio);
}

/// A recording as it was spoken into a task.
struct Spoken {
  SpeechSample const* sample;
  Clock::time_point begin;
  double position;  // seconds of audio before it
};

/// Appends the buffers at the speed at which they were spoken, and a pause after them.
double speak(Recognition const& recognition, Spoken const& spoken) {
  constexpr std::size_t pause = 24'000;
  std::vector<std::int16_t> samples = spoken.sample->samples;
  samples.resize(samples.size() + pause);
  std::size_t appended = 0;
  for (auto const& buffer : buffersOf(samples, sampleRate, 320)) {
    appended += buffer->frameLength();
    auto const due = std::chrono::duration_cast<Clock::duration>(Seconds(seconds(appended)));
    std::this_thread::sleep_until(spoken.begin + due);
    recognition.request->appendAudioPCMBuffer(buffer);
  }
  return seconds(samples.size());
}

struct Latencies {
  std::vector<double> untilFirst;
  std::vector<double> untilSettled;
};

/// Which results belong to a recording is told by the time of speech in the settled ones; what
/// was shown since the one before led up to it.
Latencies latencies(std::vector<Spoken> const& all,
                    std::vector<RecognitionRecorder::Entry> const& entries) {
  Latencies found;
  auto entry = entries.begin();
  for (Spoken const& spoken : all) {
    auto const [onset, end] = speechBounds(spoken.sample->samples);
    double const next = spoken.position + seconds(spoken.sample->samples.size());
    auto const since = [&](auto const& one) { return Seconds(one.time - spoken.begin).count(); };
    bool isFirst = true;
    double settled = 0;
    while (true) {
      auto const last = std::find_if(entry, entries.end(), [](auto const& one) {
        return one.result->speechRecognitionMetadata && !one.result->isFinal;
      });
      if (last == entries.end()) break;
      if (Seconds(last->result->speechRecognitionMetadata->speechStart).count() > next) break;
      if (isFirst) found.untilFirst.push_back(since(*entry) - onset);
      isFirst = false;
      settled = since(*last) - end;
      entry = last + 1;
    }
    if (!isFirst) found.untilSettled.push_back(settled);
  }
  return found;
}

void runLive(SpeechRecognizerOperations const& operations, std::vector<SpeechSample> const& samples,
             double duration) {
  Recognition const recognition(operations);
  std::vector<Spoken> spoken;
  std::string said;
  double position = 0;
  auto const start = Clock::now();
  double const before = processorSeconds();
  do {
    for (SpeechSample const& sample : samples) {
      spoken.push_back({&sample, Clock::now(), position});
      position += speak(recognition, spoken.back());
      said += sample.transcript + ' ';
    }
  } while (Seconds(Clock::now() - start).count() < duration);
  recognition.finish();
  double const elapsed = Seconds(Clock::now() - start).count();
  double const used = processorSeconds() - before;

  std::size_t const wrong = wrongWords(said, recognition.recorder.settledText());
  auto const [untilFirst, untilSettled] = latencies(spoken, recognition.recorder.entries());
  fmt::print("live, {:.0f} s: words wrong {:.1f}%\n", elapsed,
             100.0 * static_cast<double>(wrong) / static_cast<double>(spokenWords(said).size()));
  fmt::print(
      "first text {:.2f} s after the onset of speech, settled {:.2f} s after its end (medians of "
      "{})\n",
      median(untilFirst), median(untilSettled), untilSettled.size());
  fmt::print("processor: {:.0f}% of a core\n", 100 * used / elapsed);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    fmt::print(stderr, "usage: RecogniserBenchmark FOLDER [SECONDS]\n");
    return EXIT_FAILURE;
  }
  auto const parts = installedSpeechParts(modelsFolder(), std::chrono::seconds(2));
  if (auto const problem = parts.problem()) {
    fmt::print(stderr, "{}\n", *problem);
    return EXIT_FAILURE;
  }
  auto const operations = onDeviceSpeechRecognizer(parts);
  auto const samples = speechSamples(argv[1]);
  runFast(operations, samples);
  runLive(operations, samples, argc > 2 ? std::atof(argv[2]) : 0);
  fmt::print("memory: {} MB at its peak, ", peakMegabytes());
  std::this_thread::sleep_for(std::chrono::seconds(3));
  fmt::print("{} MB after the models were given back\n", residentMegabytes());
}
