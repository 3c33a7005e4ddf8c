// SPDX-License-Identifier: MIT
#include "services/recogniser/ListenSession.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "services/ScriptedWebSocket.hpp"
#include "support/ScriptedSpeechModels.hpp"
#include "support/SpeechSamples.hpp"
#include "support/WordErrors.hpp"

namespace vek::test {
namespace {

using namespace std::chrono_literals;
using services::ListenQuery;
using services::ListenSession;
using services::WebSocket;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Samples = std::vector<std::int16_t>;
using CloseCode = WebSocket::CloseCode;

constexpr std::size_t bytesPerSecond = 2 * speechSampleRate;

OnDeviceSpeechParts scriptedParts(SpeechEngine::Load load) {
  return {.engine = std::make_shared<SpeechEngine>(std::move(load), 1min),
          .problem = [] { return std::nullopt; },
          .authorizationStatus = [] { return SpeechRecognizerAuthorizationStatus::authorized; }};
}

/// Little-endian, as this machine has them.
std::string bytesOf(Samples const& samples) {
  return {reinterpret_cast<char const*>(samples.data()), samples.size() * sizeof samples[0]};
}

/// A stream to an engine of its own.
class Stream {
 public:
  explicit Stream(OnDeviceSpeechParts parts, ListenQuery query = standard())
      : parts_(std::move(parts)) {
    auto const seat = std::make_shared<int>();
    seat_ = seat;
    std::make_shared<ListenSession>(socket, onDeviceSpeechRecognizer(parts_).make(Locale("en-US")),
                                    query, seat)
        ->start();
  }
  Stream(Stream const&) = delete;
  Stream& operator=(Stream const&) = delete;
  ~Stream() {
    parts_.engine->stop();
    socket->leave();
  }

  static ListenQuery standard() {
    return {.sampleRate = speechSampleRate, .channels = 1, .interimResults = true};
  }

  /// Audio in messages of these lengths, one after the other and from the first again.
  void say(std::string const& bytes, std::vector<std::size_t> const& lengths = {2048},
           std::chrono::milliseconds pause = 0ms) const {
    std::size_t turn = 0;
    for (std::size_t at = 0; at < bytes.size();) {
      auto const length = lengths[turn++ % lengths.size()];
      ASSERT_TRUE(socket->say({WebSocket::Message::Kind::binary, bytes.substr(at, length)}));
      at += length;
      std::this_thread::sleep_for(pause);
    }
  }

  /// Whether the session goes when its client and its audio have gone.
  [[nodiscard]] bool endsWithItsClient() const {
    socket->leave();
    for (int i = 0; i < 2000 && !seat_.expired(); ++i) std::this_thread::sleep_for(10ms);
    return seat_.expired();
  }

  std::shared_ptr<ScriptedWebSocket> const socket = std::make_shared<ScriptedWebSocket>();

 private:
  OnDeviceSpeechParts parts_;
  std::weak_ptr<int> seat_;
};

Stream scripted(ListenQuery query = Stream::standard()) {
  return Stream(scriptedParts([] { return std::make_unique<ScriptedSpeechModels>(); }), query);
}

std::vector<std::string> finalTexts(std::vector<Deepgram::ResultDTO> const& results) {
  std::vector<std::string> texts;
  for (auto const& result : results) {
    if (result.isFinal) texts.push_back(result.channel.alternatives.at(0).transcript);
  }
  return texts;
}

TEST(ListenSession, EachPieceIsSettledAtItsPauseAndPartsFollowWithoutAGap) {
  auto const stream = scripted();
  // Not all at once, or interim results would be left out.
  stream.say(bytesOf(SpokenWords().words(1, 5).silence(1).words(6, 8).silence(1).samples()), {2048},
             4ms);
  auto const results = stream.socket->results(2);
  EXPECT_THAT(finalTexts(results), ElementsAre(SpokenWords::text(1, 5), SpokenWords::text(6, 8)));
  double settledUntil = 0;
  std::size_t interims = 0;
  for (auto const& result : results) {
    EXPECT_DOUBLE_EQ(result.start, settledUntil);
    EXPECT_EQ(result.speechFinal, result.isFinal);
    EXPECT_FALSE(result.fromFinalize);
    if (result.isFinal) settledUntil += result.duration;
    interims += result.isFinal ? 0 : 1;
    auto begin = result.start;
    for (auto const& word : result.channel.alternatives[0].words) {
      EXPECT_GE(word.start, begin - 1e-9);
      EXPECT_EQ(word.speaker, 0);
      begin = word.end;
    }
    EXPECT_LE(begin, result.start + result.duration + 1e-9);
  }
  EXPECT_GT(interims, 0U);
  // Eight words of 0.4 s and the pause between.
  EXPECT_NEAR(settledUntil, 4.2, 0.2);
  EXPECT_NEAR(results.back().channel.alternatives[0].words[0].start, 3.0, 0.1);
  EXPECT_TRUE(stream.endsWithItsClient());
}

TEST(ListenSession, WhatIsNotAskedForIsNotSent) {
  auto const stream = scripted({.sampleRate = 16000, .channels = 1, .endpointing = false});
  stream.say(bytesOf(SpokenWords().words(1, 5).silence(1).samples()));
  auto const results = stream.socket->results(1);
  ASSERT_THAT(results, SizeIs(1));
  EXPECT_TRUE(results[0].isFinal);
  EXPECT_FALSE(results[0].speechFinal);
}

TEST(ListenSession, ATextThatIsCutForItsLengthIsFinalWithoutAPause) {
  auto const stream = scripted({.sampleRate = 16000, .channels = 1});
  stream.say(bytesOf(SpokenWords().words(1, 35).silence(1).samples()));
  auto const results = stream.socket->results(2);
  ASSERT_THAT(results, SizeIs(2));
  EXPECT_FALSE(results[0].speechFinal);
  EXPECT_TRUE(results[1].speechFinal);
}

TEST(ListenSession, FinalizeSettlesAllSoFarAndTheStreamGoesOn) {
  auto const stream = scripted();
  auto const finalize = R"({ "type": "Finalize" })";
  stream.socket->say(finalize);
  stream.say(bytesOf(SpokenWords().words(1, 3).samples()));
  for (auto const* ignored : {R"({"type":"KeepAlive"})", R"({"type":"Other"})", "[]", "nonsense"}) {
    EXPECT_TRUE(stream.socket->say(ignored));
  }
  stream.socket->say(finalize);
  stream.say(bytesOf(SpokenWords().words(4, 6).samples()));
  stream.socket->say(finalize);
  auto results = stream.socket->results(3);
  std::erase_if(results, [](auto const& result) { return !result.isFinal; });
  EXPECT_THAT(finalTexts(results),
              ElementsAre("", SpokenWords::text(1, 3), SpokenWords::text(4, 6)));
  for (auto const& result : results) {
    EXPECT_TRUE(result.fromFinalize);
    EXPECT_FALSE(result.speechFinal);
  }
  EXPECT_DOUBLE_EQ(results[2].start, 1.2);
  EXPECT_DOUBLE_EQ(results[2].duration, 1.2);
  EXPECT_NEAR(results[2].channel.alternatives[0].words[0].start, 1.2, 0.05);
}

TEST(ListenSession, TheClosingRecordTellsWhatCameInAll) {
  auto const stream = scripted({.sampleRate = 16000, .channels = 2});
  // Half a frame is left over.
  stream.say("abcdefghijklmnopqrstuvwxyz", {1, 5, 3});
  stream.socket->say(R"({"type":"CloseStream"})");
  // Where the answer has not come before it, this is not heard.
  std::ignore = stream.socket->say({WebSocket::Message::Kind::binary, "too late"}, 100ms);
  EXPECT_EQ(stream.socket->closeCode(), CloseCode::normalClosure);
  auto const record = json::decode<Deepgram::MetadataDTO>(stream.socket->lastText());
  EXPECT_EQ(record.type, "Metadata");
  EXPECT_EQ(record.sha256, "71c480df93d6ae2f1efad1447c66c9525e316218cf51fc8d9ed832f2daf18b73");
  EXPECT_DOUBLE_EQ(record.duration, 6.0 / 16000);
  EXPECT_EQ(record.channels, 2);
  EXPECT_THAT(record.created, testing::MatchesRegex("20..-..-..T..:..:..Z"));
  EXPECT_TRUE(record.modelInfo->contains(record.models->at(0)));
  EXPECT_THAT(stream.socket->results(0), IsEmpty());
}

TEST(ListenSession, AClientThatIsFasterThanTheRecogniserHasToWaitAndLosesNothing) {
  std::latch released(1);
  Stream const stream(scriptedParts([&released] {
    released.wait();
    return std::make_unique<ScriptedSpeechModels>();
  }));
  auto const audio = bytesOf(SpokenWords().words(1, 40).silence(1).samples());
  constexpr std::size_t step = bytesPerSecond / 10;
  std::size_t taken = 0;
  while (taken < audio.size() &&
         stream.socket->say({WebSocket::Message::Kind::binary, audio.substr(taken, step)}, 500ms)) {
    taken += step;
  }
  EXPECT_LE(taken, 2 * bytesPerSecond + step);
  released.count_down();
  stream.say(audio.substr(taken), {step});
  auto const texts = finalTexts(stream.socket->results(2));
  std::string all;
  for (auto const& text : texts) all += (all.empty() ? "" : " ") + text;
  EXPECT_EQ(all, SpokenWords::text(1, 40));
  EXPECT_TRUE(stream.endsWithItsClient());
}

TEST(ListenSession, ModelsThatFailEndTheStream) {
  Stream const stream(scriptedParts(
      []() -> std::unique_ptr<SpeechModels> { throw std::runtime_error("They are gone."); }));
  stream.socket->say({WebSocket::Message::Kind::binary, "some"});
  EXPECT_EQ(stream.socket->closeCode(), CloseCode::internalError);
}

TEST(ListenSession, SpeechIsUnderstoodHoweverItIsCutIntoMessages) {
  auto const samples = speechSamples(VEK_SAMPLE_SPEECH);
  auto const sample = std::ranges::find(samples, "hts-slt-s02.wav", &SpeechSample::name);
  Stream const stream(installedSpeechParts(modelsFolder()));
  stream.say(bytesOf(sample->samples), {1, 2, 1023, 3, 5000, 4097});
  stream.socket->say(R"({ "type": "CloseStream" })");
  EXPECT_EQ(stream.socket->closeCode(), CloseCode::normalClosure);
  std::string text;
  for (auto const& piece : finalTexts(stream.socket->results(0))) text += piece + ' ';
  EXPECT_LE(wrongWords(sample->transcript, text), 1U) << text;
  EXPECT_THAT(text, testing::HasSubstr("subscription"));
}

}  // namespace
}  // namespace vek::test
