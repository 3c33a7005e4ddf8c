// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <limits>
#include <stdexcept>
#include <thread>

#include "Clients/RemoteSpeechRecognitionClientImpl.hpp"
#include "Clients/RemoteSpeechRecognitionError.hpp"
#include "platform/Deployment.hpp"
#include "runtime/SyncWait.hpp"
#include "support/PieceReader.hpp"
#include "support/RecogniserMessages.hpp"
#include "support/ScriptedWebSocket.hpp"

namespace vek {
namespace {

using Buffer = std::shared_ptr<AudioPCMBuffer const>;
using Code = WebSocketError::Code;
using test::closingMessage;
using test::eventually;
using test::finalMessage;
using test::Journal;
using test::partialMessage;
using test::PieceReader;
using test::ScriptedWebSocket;
using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr std::string_view key = "0123456789abcdef0123456789abcdef01234567";
std::string const finalize = R"({ "type": "Finalize" })";

/// Hands out sockets named "socket 1" and so on, which it does not hold.
struct ScriptedNetwork {
  explicit ScriptedNetwork(std::shared_ptr<Journal> entries) : journal(std::move(entries)) {}

  struct Session final : URLSession {
    explicit Session(ScriptedNetwork& owner) : network(owner) {}
    std::shared_ptr<URLSessionWebSocketTask> webSocketTask(HTTPRequest request) override {
      return network.make(std::move(request));
    }
    ScriptedNetwork& network;
  };

  std::shared_ptr<URLSessionWebSocketTask> make(HTTPRequest request) {
    std::lock_guard const lock(mutex);
    auto socket = std::make_shared<ScriptedWebSocket>(
        "socket " + std::to_string(sockets.size() + 1), journal, std::move(request));
    if (holdsSends) socket->holdSends();
    sockets.emplace_back(socket);
    return socket;
  }
  /// The socket of that number, from 1; waits for it to connect.
  std::shared_ptr<ScriptedWebSocket> socket(std::size_t number) {
    EXPECT_TRUE(journal->waitFor("socket " + std::to_string(number) + " connects"));
    std::lock_guard const lock(mutex);
    return sockets.at(number - 1).lock();
  }
  std::size_t count() {
    std::lock_guard const lock(mutex);
    return sockets.size();
  }

  std::shared_ptr<Journal> journal;
  std::mutex mutex;
  std::vector<std::weak_ptr<ScriptedWebSocket>> sockets;
  std::atomic<bool> holdsSends = false;
};

struct RemoteClientTest : testing::Test {
  RemoteClientTest() {
    setDeployment(
        {.recogniserURL = "wss://recogniser.test:8443", .recogniserKey = std::string(key)});
  }
  /// Nothing outlives the client, and no log holds the key.
  ~RemoteClientTest() override {
    syncWait(client.stopRecording());
    client = {};
    EXPECT_TRUE(eventually([this] {
      return std::ranges::all_of(microphones, [](auto const& each) { return each.isAbandoned(); });
    })) << "an audio task still reads";
    EXPECT_TRUE(eventually([this] {
      return std::ranges::all_of(network.sockets, [](auto const& each) { return each.expired(); });
    })) << "a socket is still held";
    EXPECT_THAT(log->entries(), Not(Contains(HasSubstr(key))));
    setDeployment(Deployment::builtIn());
  }

  RemoteSpeechRecognitionClient makeClient() {
    RecordingClient const microphone{
        .startRecording =
            [this] {
              if (beforeMicrophone) beforeMicrophone();
              auto ends = RecordingClient::Buffers::makeStream();
              {
                std::lock_guard const lock(network.mutex);
                microphones.push_back(ends.continuation);
              }
              journal->add("microphone on");
              return std::move(ends.stream);
            },
        .stopRecording = [journal = journal] { journal->add("microphone off"); }};
    return withDependencies(
        [&](DependencyValues& values) { values.set(recordingClient, microphone); },
        [this] {
          return makeRemoteSpeechRecognitionClient(
              {.makeSession =
                   [this](auto const&) {
                     return std::make_shared<ScriptedNetwork::Session>(network);
                   },
               .captureDevice = {
                   .authorizationStatusForMediaType = [this](MediaType) { return status; },
                   .requestAccessForMediaType =
                       [this](MediaType, std::function<void(bool)> const& answer) {
                         answer(status == AuthorizationStatus::authorized);
                       }}});
        });
  }

  /// Starts a recording and waits until the microphone is on for the `count`th time.
  std::unique_ptr<PieceReader> start(std::ptrdiff_t count = 1) {
    auto reader = std::make_unique<PieceReader>(syncWait(client.startRecording()));
    EXPECT_TRUE(journal->waitFor("microphone on", count));
    return reader;
  }
  void stop() { syncWait(client.stopRecording()); }

  void speak(std::vector<std::int16_t> samples, double rate = 48000, std::uint32_t channels = 1) {
    AudioFormat const format(AudioCommonFormat::pcmFormatInt16, rate, channels, true);
    microphones.back().yield(std::make_shared<AudioPCMBuffer const>(format, std::move(samples)));
  }
  /// Starts a recording and waits until its first buffer, of 2 bytes, has opened a socket that is
  /// read.
  std::unique_ptr<PieceReader> startStreaming() {
    auto const number = std::to_string(network.count() + 1);
    auto reader = start(journal->count("microphone on") + 1);
    speak({1});
    EXPECT_TRUE(journal->waitFor("socket " + number + " reads"));
    return reader;
  }
  /// Sends one more buffer of a size that no other has, and waits until it has come to the socket.
  void expectSent(std::size_t number, double rate = 48000) {
    ++lastSize;
    speak(std::vector<std::int16_t>(lastSize), rate);
    EXPECT_TRUE(journal->waitFor("socket " + std::to_string(number) + " sends " +
                                 std::to_string(2 * lastSize) + " bytes"));
  }
  static std::string ended(PieceReader& reader) {
    EXPECT_TRUE(eventually([&] { return reader.hasEnded(); }));
    return reader.read().back();
  }

  std::shared_ptr<Journal> journal = std::make_shared<Journal>();
  std::shared_ptr<Journal> log = std::make_shared<Journal>();
  LogRedirection redirection{
      [log = log](LogLevel level, std::string_view category, std::string_view message) {
        EXPECT_EQ(category, "RemoteSpeechRecognitionClient");
        log->add(std::string(name(level)) + ": " + std::string(message));
      },
      LogLevel::debug};
  AuthorizationStatus status = AuthorizationStatus::authorized;
  std::function<void()> beforeMicrophone;
  std::vector<StreamContinuation<Buffer>> microphones;
  std::size_t lastSize = 10;
  ScriptedNetwork network{journal};
  RemoteSpeechRecognitionClient client = makeClient();
};

TEST_F(RemoteClientTest, FirstBufferOpensTheSocketThatItsFormatNames) {
  auto const reader = start();
  speak({0x0102, -2}, 44100.0, 2);
  EXPECT_TRUE(journal->waitFor("socket 1 reads"));
  EXPECT_EQ(network.socket(1)->lastSent(), "\x02\x01\xfe\xff");
  expectSent(1, 44100);
  EXPECT_THAT(journal->entries(),
              ElementsAre("microphone on", "socket 1 tells its delegate", "socket 1 connects",
                          "socket 1 sends 4 bytes", "socket 1 reads", "socket 1 sends 22 bytes"));

  auto const socket = network.socket(1);
  auto const& request = socket->request();
  EXPECT_EQ(request.url,
            "wss://recogniser.test:8443/v1/listen?model=nova-2-meeting&diarize=true&"
            "interim_results=true&endpointing=true&sample_rate=44100&channels=2&encoding=linear16");
  ASSERT_EQ(request.headers.size(), 1U);
  EXPECT_EQ(request.headers[0].name, "Authorization");
  EXPECT_EQ(request.headers[0].value, "Token " + std::string(key));
  EXPECT_EQ(request.timeout, std::chrono::seconds(60));
  socket->open("chat");
  socket->open(std::nullopt);
  EXPECT_THAT(log->entries(),
              ElementsAre("debug: New connection", "notice: Deepgram URL: " + request.url,
                          "debug: WebSocket connection opened. Protocol: chat",
                          "debug: WebSocket connection opened. Protocol: <none>"));
}

TEST_F(RemoteClientTest, EachMessageIsTakenForWhatItIs) {
  struct Case {
    std::string message;
    std::string piece;
    std::string log;
  };
  auto const without = [](std::string text, std::string const& part) {
    auto const at = text.find(part);
    EXPECT_NE(at, std::string::npos);
    return text.replace(at, part.size(), "\"other\"");
  };
  std::string const dropped = "error: Couldn't handle deepgram results response: $";
  auto const reader = startStreaming();
  auto const socket = network.socket(1);
  for (auto const& [message, piece, entry] : {
           Case{partialMessage("so"), "so...", "debug: Received transcript: so"},
           Case{finalMessage("so be it"), "so be it", "debug: Received transcript: so be it"},
           Case{partialMessage(""), "", "error: No transcript found in response."},
           Case{json::encode(Deepgram::ResultDTO()), "", "error: No transcript found in response."},
           Case{without(finalMessage("no"), "\"from_finalize\""), "",
                dropped + ".from_finalize: missing"},
           Case{without(finalMessage("no"), "\"speaker\""), "",
                dropped + ".channel.alternatives[0].words[0].speaker: missing"},
           Case{R"({"type":"UtteranceEnd"})", "", dropped + ".channel_index: missing"},
           Case{"no JSON", "", dropped + ": not JSON: syntax error"},
       }) {
    auto const piecesBefore = reader->read().size();
    socket->deliver(message);
    EXPECT_TRUE(socket->isReading()) << message;
    EXPECT_EQ(log->entries().back(), entry);
    EXPECT_TRUE(log->contains("debug: Received response: " + message));
    if (piece.empty()) {
      EXPECT_EQ(reader->read().size(), piecesBefore) << message;
    } else {
      EXPECT_EQ(reader->read().back(), piece);
    }
  }
  socket->deliver("anything", WebSocketMessage::Kind::binary);
  EXPECT_EQ(log->entries().back(), "debug: Received data");
  EXPECT_TRUE(socket->isReading());

  socket->deliver(closingMessage());
  EXPECT_FALSE(socket->isReading()) << "the metadata is the server's end";
  EXPECT_THAT(reader->read(), ElementsAre("so...", "so be it", "end"));
  expectSent(1);
}

TEST_F(RemoteClientTest, ANewSampleRateOpensANewSocketOnTheSameStream) {
  auto const reader = startStreaming();
  auto const first = network.socket(1);
  first->deliver(partialMessage("one"));
  speak({1}, 48000, 2);
  expectSent(1);
  auto const late = first->takeRead();
  expectSent(2, 16000);
  ASSERT_TRUE(journal->waitFor("socket 2 reads"));
  EXPECT_THAT(network.socket(2)->request().url, HasSubstr("sample_rate=16000"));
  EXPECT_THAT(log->entries(), Contains("error: Audio format did change"));
  EXPECT_TRUE(journal->contains("socket 1 closes with 1001"));

  // What the old socket has to say is of no consequence.
  late(WebSocketMessage{.bytes = finalMessage("late")});
  late(ScriptedWebSocket::failure(Code::cancelled));
  late(ScriptedWebSocket::failure(Code::notConnected));
  network.socket(2)->deliver(finalMessage("two"));
  EXPECT_THAT(reader->read(), ElementsAre("one...", "two"));
  EXPECT_EQ(journal->count("socket 1 reads"), 2);
  EXPECT_EQ(journal->count("socket 2 reads"), 2);
  EXPECT_EQ(network.count(), 2U);
}

TEST_F(RemoteClientTest, TheSampleRateMayChangeAtEachStage) {
  auto const reader = start();
  network.holdsSends = true;
  speak({1});
  auto const connecting = network.socket(1);
  network.holdsSends = false;
  speak({1, 2}, 16000);
  // The first buffer waits for the handshake, and the second one for the first.
  connecting->finishSends();
  ASSERT_TRUE(journal->waitFor("socket 2 reads"));
  EXPECT_FALSE(connecting->isReading());

  network.socket(2)->failRead(Code::notConnected);
  ASSERT_TRUE(journal->waitFor("socket 3 reads"));
  EXPECT_THAT(network.socket(3)->request().url, HasSubstr("sample_rate=16000"));
  expectSent(4, 44100);
  ASSERT_TRUE(journal->waitFor("socket 4 reads"));
  network.socket(4)->deliver(finalMessage("said"));
  EXPECT_THAT(reader->read(), ElementsAre("said"));

  network.socket(4)->holdSends();
  stop();
  auto const closing = network.socket(4);
  speak({1}, 8000);
  EXPECT_TRUE(eventually([&] { return microphones.back().isAbandoned(); }));
  closing->finishSends();
  EXPECT_EQ(network.count(), 4U) << "nothing opens after a stop";

  // The format of the last recording is remembered.
  auto const next = start(2);
  speak({1}, 16000);
  ASSERT_TRUE(journal->waitFor("socket 5 reads"));
  EXPECT_EQ(log->entries()[log->entries().size() - 2], "error: Audio format did change");
}

TEST_F(RemoteClientTest, ADroppedConnectionIsReplacedWhileWorking) {
  auto const reader = startStreaming();
  network.socket(1)->deliver(partialMessage("one"));
  network.socket(1)->failRead(Code::notConnected);
  ASSERT_TRUE(journal->waitFor("socket 2 reads"));
  EXPECT_FALSE(journal->contains("socket 2 sends 2 bytes"));
  expectSent(2);
  network.socket(2)->deliver(finalMessage("two"));
  EXPECT_THAT(reader->read(), ElementsAre("one...", "two"));
  EXPECT_EQ(journal->count("socket 2 reads"), 2);
  EXPECT_FALSE(journal->contains("microphone off"));
  EXPECT_THAT(log->entries(), Contains(StartsWith("error: Failed to receive message: ")));

  setDeployment({.recogniserURL = "nowhere"});
  network.socket(2)->failRead(Code::notConnected);
  EXPECT_THAT(reader->read(), ElementsAre("one...", "two")) << "the next buffer tries again";
  speak({1});
  EXPECT_EQ(ended(*reader), "Fatal error. Please report this to the developer.");
  EXPECT_TRUE(journal->contains("microphone off"));
}

TEST_F(RemoteClientTest, AnyOtherFailedReadEndsTheStreamAndStops) {
  auto const reader = startStreaming();
  network.socket(1)->failRead(Code::cannotConnect);
  EXPECT_EQ(ended(*reader), WebSocketError(Code::cannotConnect, "scripted").what());
  EXPECT_THAT(journal->entries(),
              ElementsAre("microphone on", _, "socket 1 connects", "socket 1 sends 2 bytes",
                          "socket 1 reads", "microphone off", "socket 1 sends " + finalize,
                          "socket 1 closes with 1001"));
  EXPECT_THAT(log->entries(), Contains("debug: Stopping streaming"));
  EXPECT_EQ(log->entries().back(), "debug: 🛑 Streaming stopped");
  EXPECT_TRUE(eventually([&] { return microphones.back().isAbandoned(); }));
}

TEST_F(RemoteClientTest, AFailedSendIsLoggedAndStreamingGoesOn) {
  auto const reader = startStreaming();
  network.socket(1)->failSends(ScriptedWebSocket::failure(Code::timedOut));
  expectSent(1);
  EXPECT_TRUE(eventually([&] {
    return log->contains(std::string("error: Error sending audio data: ") +
                         WebSocketError(Code::timedOut, "scripted").what());
  }));
  network.socket(1)->failSends(nullptr);
  expectSent(1);
  network.socket(1)->deliver(finalMessage("said"));
  EXPECT_THAT(reader->read(), ElementsAre("said"));
}

TEST_F(RemoteClientTest, AFailureOfTheMicrophoneOrOfTheFormatEndsTheStream) {
  auto reader = start(1);
  microphones.back().finish(std::make_exception_ptr(
      RemoteSpeechRecognitionError(RemoteSpeechRecognitionError::audioEngineError)));
  EXPECT_EQ(ended(*reader), "Audio engine error.");

  reader = startStreaming();
  microphones.back().finish(std::make_exception_ptr(std::runtime_error("unplugged")));
  EXPECT_EQ(ended(*reader), "unplugged");
  EXPECT_TRUE(journal->waitFor("socket 1 closes with 1001"));

  reader = start(3);
  microphones.back().finish();
  EXPECT_TRUE(eventually([&] { return microphones.back().isAbandoned(); }));
  EXPECT_FALSE(reader->hasEnded());

  std::ptrdiff_t count = 3;
  for (double const rate : {std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN(), 0x1p63, -0x1p64}) {
    reader = start(++count);
    speak({1}, rate);
    EXPECT_EQ(ended(*reader), "Fatal error. Please report this to the developer.") << rate;
  }
  EXPECT_EQ(network.count(), 1U);
}

TEST_F(RemoteClientTest, StopBeforeTheFirstBufferOpensNothingAndLeavesTheStreamOpen) {
  auto const reader = start();
  stop();
  EXPECT_TRUE(eventually([&] { return microphones.back().isAbandoned(); }));
  speak({1});
  EXPECT_THAT(journal->entries(), ElementsAre("microphone on", "microphone off"));
  EXPECT_THAT(reader->read(), IsEmpty());
  EXPECT_THAT(log->entries(), IsEmpty());
}

TEST_F(RemoteClientTest, StopWhileTheMicrophoneStartsDoesNotLeaveItOn) {
  beforeMicrophone = [this] {
    stop();
    beforeMicrophone = nullptr;
  };
  auto const reader = start();
  EXPECT_TRUE(eventually([&] { return journal->entries().back() == "microphone off"; }));
}

TEST_F(RemoteClientTest, TheMicrophoneStartsForOneRecordingAfterTheOther) {
  std::promise<void> isOn;
  beforeMicrophone = [this, &isOn] {
    journal->add("microphone starts");
    if (journal->count("microphone starts") == 1) isOn.get_future().wait();
  };
  std::ignore = syncWait(client.startRecording());
  ASSERT_TRUE(journal->waitFor("microphone starts"));
  stop();
  auto const reader = std::make_unique<PieceReader>(syncWait(client.startRecording()));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  isOn.set_value();
  EXPECT_TRUE(journal->waitFor("microphone on", 2));
  EXPECT_THAT(journal->entries(),
              ElementsAre("microphone starts", "microphone off", "microphone on",
                          "microphone starts", "microphone on"));
  speak({1});
  EXPECT_TRUE(journal->waitFor("socket 1 reads"));
}

TEST_F(RemoteClientTest, StopSendsFinalizeAndClosesWithoutAnAnswer) {
  for (bool const isConnecting : {true, false}) {
    std::size_t const number = isConnecting ? 1 : 2;
    std::string const name = "socket " + std::to_string(number);
    network.holdsSends = isConnecting;
    auto const reader = start(static_cast<std::ptrdiff_t>(number));
    speak({1});
    ASSERT_TRUE(journal->waitFor(name + (isConnecting ? " sends 2 bytes" : " reads")));
    auto const socket = network.socket(number);
    socket->holdSends();
    stop();
    stop();
    EXPECT_EQ(journal->count(name + " sends " + finalize), 2);
    EXPECT_FALSE(journal->contains(name + " closes with 1001")) << "Finalize is still on its way";
    EXPECT_FALSE(reader->hasEnded());
    if (!isConnecting) {
      socket->deliver(finalMessage("late"));
      EXPECT_FALSE(socket->isReading());
    }
    socket->finishSends();
    EXPECT_THAT(reader->read(), ElementsAre("end"));
    EXPECT_TRUE(journal->contains(name + " closes with 1001"));
    EXPECT_TRUE(eventually([&] { return microphones.back().isAbandoned(); }));
    EXPECT_EQ(log->entries().back(), "debug: 🛑 Streaming stopped");
  }
}

TEST_F(RemoteClientTest, AConnectionLostAfterTheStopIsReportedAndNotReplaced) {
  auto const reader = startStreaming();
  network.socket(1)->holdSends();
  stop();
  network.socket(1)->failRead(Code::notConnected);
  EXPECT_EQ(ended(*reader), WebSocketError(Code::notConnected, "scripted").what());
  network.socket(1)->finishSends();
  EXPECT_EQ(network.count(), 1U);
}

TEST_F(RemoteClientTest, TheEndOfOneRecordingLeavesTheNextAlone) {
  auto const first = startStreaming();
  auto const socket = network.socket(1);
  socket->holdSends();
  auto const lateRead = socket->takeRead();
  auto const oldMicrophone = microphones.back();
  stop();
  auto const second = startStreaming();
  EXPECT_TRUE(oldMicrophone.isAbandoned());

  lateRead(WebSocketMessage{.bytes = finalMessage("late")});
  lateRead(ScriptedWebSocket::failure(Code::notConnected));
  lateRead(ScriptedWebSocket::failure(Code::timedOut));
  socket->finishSends();
  EXPECT_THAT(first->read(), ElementsAre("end"));
  EXPECT_TRUE(journal->contains("socket 1 closes with 1001"));
  EXPECT_EQ(journal->count("microphone off"), 1);

  network.socket(2)->deliver(finalMessage("new"));
  EXPECT_THAT(second->read(), ElementsAre("new"));
  expectSent(2);
  EXPECT_EQ(network.count(), 2U);
}

TEST_F(RemoteClientTest, AFailureThatIsAnsweredByAStartLeavesTheMicrophoneOn) {
  auto reader = startStreaming();
  network.socket(1)->failRead(Code::timedOut);
  EXPECT_TRUE(reader->hasEnded());
  reader = startStreaming();
  EXPECT_EQ(journal->count("microphone off"), 1);
  network.socket(2)->deliver(finalMessage("again"));
  EXPECT_THAT(reader->read(), ElementsAre("again"));
}

TEST_F(RemoteClientTest, ASecondStartTakesTheConnectionOver) {
  auto const first = startStreaming();
  auto const second = start(2);
  EXPECT_TRUE(eventually([&] { return microphones.front().isAbandoned(); }));
  expectSent(1);
  network.socket(1)->deliver(finalMessage("for the second"));
  EXPECT_THAT(first->read(), IsEmpty());
  EXPECT_THAT(second->read(), ElementsAre("for the second"));
}

TEST_F(RemoteClientTest, WhatComesAfterTheClientIsGoneDoesNothing) {
  auto const reader = startStreaming();
  network.socket(1)->holdSends();
  stop();
  auto const socket = network.socket(1);
  auto const read = socket->takeRead();
  client = makeClient();
  read(WebSocketMessage{.bytes = finalMessage("late")});
  socket->finishSends();
  EXPECT_THAT(reader->read(), IsEmpty());
  EXPECT_FALSE(journal->contains("socket 1 closes with 1001"));
}

TEST_F(RemoteClientTest, ResultsFailuresAndBuffersThatComeDuringAStopDoNoHarm) {
  for (int round = 0; round < 100; ++round) {
    auto const reader = startStreaming();
    auto const socket = network.socket(network.count());
    std::thread results([&] {
      for (int number = 0; number < 5; ++number) {
        if (auto const read = socket->takeRead())
          read(WebSocketMessage{.bytes = partialMessage("piece")});
      }
      if (auto const read = socket->takeRead())
        read(ScriptedWebSocket::failure(Code::notConnected));
    });
    std::thread buffers([microphone = microphones.back()] {
      for (double const rate : {48000.0, 48000.0, 16000.0, 48000.0}) {
        AudioFormat const format(AudioCommonFormat::pcmFormatInt16, rate, 1, true);
        microphone.yield(
            std::make_shared<AudioPCMBuffer const>(format, std::vector<std::int16_t>(1)));
      }
    });
    stop();
    results.join();
    buffers.join();
    ASSERT_TRUE(eventually([&] { return microphones.back().isAbandoned(); })) << round;
  }
}

TEST_F(RemoteClientTest, OnlyAnAuthorizedMicrophoneIsPermitted) {
  EXPECT_TRUE(syncWait(client.hasPermission()));
  EXPECT_TRUE(syncWait(client.requestPermission()));
  for (auto const other : {AuthorizationStatus::notDetermined, AuthorizationStatus::restricted,
                           AuthorizationStatus::denied}) {
    status = other;
    EXPECT_FALSE(syncWait(client.hasPermission()));
    EXPECT_THROW(syncWait(client.requestPermission()), RemoteSpeechRecognitionError);
  }
  try {
    syncWait(client.requestPermission());
  } catch (RemoteSpeechRecognitionError const& error) {
    EXPECT_EQ(error,
              RemoteSpeechRecognitionError(RemoteSpeechRecognitionError::authorizationDenied));
  }
}

}  // namespace
}  // namespace vek
