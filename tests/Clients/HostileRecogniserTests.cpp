// SPDX-License-Identifier: MIT
// What the user sees of a hosted recogniser, or of a network, that does not behave: through the
// real sockets, against a server that does what each row writes down.
#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <chrono>

#include "Clients/RemoteSpeechRecognitionClientImpl.hpp"
#include "platform/Deployment.hpp"
#include "runtime/SyncWait.hpp"
#include "support/Journal.hpp"
#include "support/PieceReader.hpp"
#include "support/RecogniserMessages.hpp"
#include "support/WebSocketTestServer.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using Buffer = std::shared_ptr<AudioPCMBuffer const>;
using Client = RemoteSpeechRecognitionClientImpl;
using Code = WebSocketError::Code;
using Pieces = std::vector<std::string>;
using test::eventually;
using test::finalMessage;
using test::PieceReader;
using test::TestAuthority;
using test::WebSocketFrame;
using test::WebSocketPeer;
using test::WebSocketScript;
using test::WebSocketTestServer;
using testing::ElementsAre;

TestAuthority const& authority() {
  static auto const* const instance = new TestAuthority;
  return *instance;
}

/// A recording against the recogniser at a place, with a microphone that the test speaks into.
class Streaming {
 public:
  struct Limits {
    /// For a socket to open.
    std::chrono::milliseconds open = 20s;
    std::chrono::milliseconds send = 20s;
  };

  explicit Streaming(std::string url) : Streaming(std::move(url), Limits()) {}
  Streaming(std::string url, Limits limits) : limits_(limits) {
    setDeployment({.recogniserURL = std::move(url), .trustedAuthority = authority().authority()});
    client_ = withDependencies(
        [this](DependencyValues& values) { values.set(recordingClient, microphone()); },
        [this] {
          return std::make_shared<Client>(Client::Operations{
              .makeSession = [this](auto delegate) { return makeSession(std::move(delegate)); },
              .captureDevice = {}});
        });
    start();
  }
  Streaming(Streaming const&) = delete;
  Streaming& operator=(Streaming const&) = delete;
  ~Streaming() {
    stop();
    std::weak_ptr<Client> const client = client_;
    client_ = nullptr;
    // What the sockets and the audio task hold of it, they hold for a moment.
    EXPECT_TRUE(eventually([&] { return client.expired(); })) << "the client is held";
    EXPECT_TRUE(eventually([this] {
      return std::ranges::all_of(buffers_, [](auto const& each) { return each.isAbandoned(); });
    })) << "an audio task still reads";
    EXPECT_TRUE(eventually([this] {
      return std::ranges::all_of(sockets_, [](auto const& each) { return each.expired(); });
    })) << "a socket is held";
    setDeployment(Deployment::builtIn());
  }

  void start() {
    auto const before = microphoneStarts();
    reader_ = std::make_unique<PieceReader>(syncWait(client_->startRecording()));
    EXPECT_TRUE(eventually([&] { return microphoneStarts() > before; }));
  }
  void stop() { syncWait(client_->stopRecording()); }

  void speak(double rate = 48000, std::size_t frames = 48) {
    speak(rate, std::vector<std::int16_t>(frames));
  }
  void speak(double rate, std::vector<std::int16_t> samples) {
    AudioFormat const format(AudioCommonFormat::pcmFormatInt16, rate, 1, true);
    std::lock_guard const lock(mutex_);
    buffers_.back().yield(std::make_shared<AudioPCMBuffer const>(format, std::move(samples)));
  }
  /// Speaks on until all is as it should be.
  void speakUntil(std::function<bool()> const& condition, double rate = 48000) {
    EXPECT_TRUE(eventually([&] {
      speak(rate);
      std::this_thread::sleep_for(3ms);
      return condition();
    })) << testing::PrintToString(reader_->read());
  }
  void speakUntilPieces(std::size_t count) {
    speakUntil([&] { return reader_->read().size() >= count; });
  }

  PieceReader& reader() { return *reader_; }

 private:
  /// Makes sockets that are in less of a hurry to give up, and remembers them.
  struct Session final : URLSession {
    Session(Streaming& of, std::shared_ptr<URLSession> makes)
        : owner(of), session(std::move(makes)) {}
    std::shared_ptr<URLSessionWebSocketTask> webSocketTask(HTTPRequest request) override {
      request.timeout = owner.limits_.open;
      auto socket = session->webSocketTask(std::move(request));
      std::lock_guard const lock(owner.mutex_);
      owner.sockets_.emplace_back(socket);
      return socket;
    }
    Streaming& owner;
    std::shared_ptr<URLSession> session;
  };

  std::shared_ptr<URLSession> makeSession(std::weak_ptr<URLSessionWebSocketDelegate> delegate) {
    auto configuration = URLSession::Configuration::defaultSessionConfiguration();
    configuration.sendTimeout = limits_.send;
    return std::make_shared<Session>(*this, URLSession::make(configuration, std::move(delegate)));
  }
  RecordingClient microphone() {
    return {.startRecording =
                [this] {
                  auto ends = RecordingClient::Buffers::makeStream();
                  std::lock_guard const lock(mutex_);
                  buffers_.push_back(ends.continuation);
                  return std::move(ends.stream);
                },
            .stopRecording = [] {}};
  }
  [[nodiscard]] std::size_t microphoneStarts() const {
    std::lock_guard const lock(mutex_);
    return buffers_.size();
  }

  Limits limits_;
  mutable std::mutex mutex_;
  std::vector<StreamContinuation<Buffer>> buffers_;
  std::vector<std::weak_ptr<URLSessionWebSocketTask>> sockets_;
  std::shared_ptr<Client> client_;
  std::unique_ptr<PieceReader> reader_;
};

std::optional<Code> codeOf(std::exception_ptr const& error) {
  try {
    if (error) std::rethrow_exception(error);
  } catch (WebSocketError const& failure) {
    return failure.code();
  } catch (...) {
    ADD_FAILURE() << "an error of another kind";
  }
  return std::nullopt;
}

/// What the user sees in the end: nothing but text, or the error.
struct Ending {
  enum Kind { stillGoing, ended, failed };
  Kind kind = stillGoing;
  Code code = Code::other;
};
constexpr Ending goesOn{};
constexpr Ending ends{.kind = Ending::ended};
constexpr Ending fails(Code code) {
  return {.kind = Ending::failed, .code = code};
}

struct Row {
  std::string name;
  /// One for each connection; there are as many.
  std::vector<WebSocketScript> scripts;
  Pieces pieces;
  Ending ending = goesOn;
  std::chrono::milliseconds openLimit = 20s;

  friend void PrintTo(Row const& row, std::ostream* stream) { *stream << row.name; }
};

/// A connection over which the user gets the text "said".
void say(WebSocketPeer& peer) {
  peer.upgrade();
  peer.waitForMessages(1);
  peer.text(finalMessage("said"));
}

WebSocketScript afterRequest(WebSocketScript then) {
  return [then = std::move(then)](WebSocketPeer& peer) {
    peer.readRequest();
    then(peer);
  };
}
WebSocketScript afterUpgrade(WebSocketScript then) {
  return [then = std::move(then)](WebSocketPeer& peer) {
    peer.upgrade();
    peer.waitForMessages(1);
    then(peer);
  };
}
WebSocketScript afterText(WebSocketScript then) {
  return [then = std::move(then)](WebSocketPeer& peer) {
    say(peer);
    then(peer);
  };
}
WebSocketScript amidText(WebSocketScript then) {
  return afterText([then = std::move(then)](WebSocketPeer& peer) {
    peer.bytes(WebSocketFrame{.payload = finalMessage("never heard")}.bytes().substr(0, 40));
    then(peer);
  });
}

void finish(WebSocketPeer& peer) {
  peer.finish();
}
void reset(WebSocketPeer& peer) {
  peer.reset();
}
void hang(WebSocketPeer& peer) {
  peer.hang();
}

std::vector<Row> rowsOfUpgrades() {
  auto const answer = [](int status) -> WebSocketScript {
    return [status](WebSocketPeer& peer) { peer.answer(status); };
  };
  return {{"UpgradeAnswered401", {answer(401)}, {}, fails(Code::badServerResponse)},
          {"UpgradeAnswered403", {answer(403)}, {}, fails(Code::badServerResponse)},
          {"UpgradeAnswered500", {answer(500)}, {}, fails(Code::badServerResponse)},
          {"UpgradeAnswered200", {answer(200)}, {}, fails(Code::badServerResponse)},
          {"UpgradeNeverAnswered", {afterRequest(hang)}, {}, fails(Code::timedOut), 2s},
          {"FinBeforeTheUpgrade", {afterRequest(finish)}, {}, fails(Code::cannotConnect)},
          {"RstBeforeTheUpgrade", {afterRequest(reset)}, {}, fails(Code::cannotConnect)}};
}

std::vector<Row> rowsOfDrops() {
  auto const close = [](int code, std::string reason) -> WebSocketScript {
    return [code, reason](WebSocketPeer& peer) { peer.close(code, reason); };
  };
  auto const closeWithoutCode = [](WebSocketPeer& peer) { peer.closeWithoutCode(); };
  auto const atOnce = [](WebSocketScript then) -> WebSocketScript {
    return [then = std::move(then)](WebSocketPeer& peer) {
      peer.upgrade();
      then(peer);
    };
  };
  Pieces const twice{"said", "said"};
  return {{"FinAtOnce", {atOnce(finish), say}, {"said"}},
          {"ClosedAtOnceAgainAndAgain", {atOnce(finish), atOnce(finish), say}, {"said"}},
          {"FinAfterAudio", {afterUpgrade(finish), say}, {"said"}},
          {"RstAfterAudio", {afterUpgrade(reset), say}, {"said"}},
          {"FinAmidAMessage", {amidText(finish), say}, twice},
          {"RstAmidAMessage", {amidText(reset), say}, twice},
          {"FinBetweenMessages", {afterText(finish), say}, twice},
          {"RstBetweenMessages", {afterText(reset), say}, twice},
          {"ClosedWith1000", {afterText(close(1000, "")), say}, twice},
          {"ClosedWith1001", {afterText(close(1001, "")), say}, twice},
          {"ClosedWith1011AndAReason", {afterText(close(1011, "no engine")), say}, twice},
          {"ClosedWithoutACode", {afterText(closeWithoutCode), say}, twice},
          {"RefusedAfterADrop",
           {afterText(finish), [](WebSocketPeer& peer) { peer.answer(503); }},
           {"said"},
           fails(Code::badServerResponse)}};
}

std::vector<Row> rowsOfMessages() {
  std::string const mebibyte(1 << 20, 'm');
  Pieces flood;
  for (int i = 0; i < 5000; ++i) flood.push_back(std::to_string(i));
  auto const raw = [](WebSocketFrame const& frame) {
    return afterText([frame](WebSocketPeer& peer) { peer.frame(frame); });
  };
  return {{"FragmentsAndPings",
           {afterUpgrade([](WebSocketPeer& peer) {
             auto const message = finalMessage("in parts");
             peer.frame({.payload = message.substr(0, 10), .isFinal = false});
             peer.ping("there?");
             peer.frame({.opcode = WebSocketFrame::continuation, .payload = message.substr(10)});
             peer.waitForPong();
             peer.text(finalMessage("after a pong"));
           })},
           {"in parts", "after a pong"}},
          {"TextOfAMebibyte",
           {afterUpgrade([mebibyte](WebSocketPeer& peer) { peer.text(finalMessage(mebibyte)); })},
           {mebibyte}},
          {"TextOverTheBound",
           {afterText([](WebSocketPeer& peer) { peer.text(std::string((16U << 20U) + 1, 'm')); })},
           {"said"},
           fails(Code::messageTooLong)},
          {"InvalidUTF8", {raw({.payload = "\xc3\x28"})}, {"said"}, fails(Code::protocolError)},
          {"ReservedBits",
           {raw({.payload = finalMessage("no"), .reservedBits = 4})},
           {"said"},
           fails(Code::protocolError)},
          {"BinaryAndOtherText",
           {afterUpgrade([](WebSocketPeer& peer) {
             peer.binary("\x01\x02");
             for (auto const* text : {"", "null", "[]", "{\"type\":\"SpeechStarted\"}", "{\"a\":"})
               peer.text(text);
             peer.text(test::partialMessage(""));
             peer.text(test::partialMessage("still here"));
           })},
           {"still here..."}},
          {"MetadataAtOnce",
           {[](WebSocketPeer& peer) {
             peer.upgrade();
             peer.text(test::closingMessage());
           }},
           {},
           ends},
          {"FloodOfResults",
           {afterUpgrade([flood](WebSocketPeer& peer) {
             for (auto const& text : flood) peer.text(finalMessage(text));
           })},
           flood}};
}

struct HostileRecogniserTest : testing::TestWithParam<std::tuple<Row, bool>> {};

TEST_P(HostileRecogniserTest, IsBorneOrExplained) {
  auto const& [row, isSecure] = GetParam();
  WebSocketTestServer server(
      row.scripts, {.identity = isSecure ? std::optional(authority().localhost()) : std::nullopt});
  {
    Streaming streaming(server.url(), {.open = row.openLimit});
    auto& reader = streaming.reader();
    if (row.ending.kind == Ending::stillGoing) {
      streaming.speakUntilPieces(row.pieces.size());
      EXPECT_FALSE(reader.hasEnded());
      streaming.stop();
    }
    streaming.speakUntil([&] { return reader.hasEnded(); });
    auto pieces = reader.read();
    if (row.ending.kind == Ending::failed) {
      EXPECT_EQ(codeOf(reader.error()), row.ending.code) << pieces.back();
    } else {
      EXPECT_EQ(pieces.back(), "end");
    }
    pieces.pop_back();
    EXPECT_EQ(pieces, row.pieces);
  }
  EXPECT_TRUE(server.waitForEnd(row.scripts.size())) << server.openConnections() << " are open";
}

auto const nameOfRow = [](testing::TestParamInfo<std::tuple<Row, bool>> const& info) {
  return std::get<0>(info.param).name + (std::get<1>(info.param) ? "OverTLS" : "");
};
INSTANTIATE_TEST_SUITE_P(Upgrade, HostileRecogniserTest,
                         testing::Combine(testing::ValuesIn(rowsOfUpgrades()), testing::Bool()),
                         nameOfRow);
INSTANTIATE_TEST_SUITE_P(Drop, HostileRecogniserTest,
                         testing::Combine(testing::ValuesIn(rowsOfDrops()), testing::Bool()),
                         nameOfRow);
INSTANTIATE_TEST_SUITE_P(Message, HostileRecogniserTest,
                         testing::Combine(testing::ValuesIn(rowsOfMessages()), testing::Bool()),
                         nameOfRow);

TEST(HostileRecogniser, ThatIsNotThereOrCannotBeTrustedIsAnError) {
  TestAuthority const foreign;
  int portOfNobody = 0;
  {
    WebSocketTestServer const server({say});
    portOfNobody = server.port();
  }
  Streaming refused("ws://localhost:" + std::to_string(portOfNobody));
  refused.speakUntil([&] { return refused.reader().hasEnded(); });
  EXPECT_EQ(codeOf(refused.reader().error()), Code::cannotConnect);

  for (auto const& identity :
       {authority().otherName(), authority().expired(), foreign.localhost()}) {
    WebSocketTestServer server({say}, {.identity = identity});
    Streaming streaming(server.url());
    streaming.speakUntil([&] { return streaming.reader().hasEnded(); });
    EXPECT_EQ(codeOf(streaming.reader().error()), Code::untrustedServer);
    EXPECT_EQ(server.connections().at(0).line, "") << "the key was given away";
  }
}

/// Takes each required key of `part`, a part of `whole`, away in turn, and collects what is left.
void collectWithoutEachKey(boost::json::value& whole, boost::json::value& part,
                           std::vector<std::string>& collected) {
  if (auto* const list = part.if_array()) {
    for (auto& element : *list) collectWithoutEachKey(whole, element, collected);
  }
  auto* const object = part.if_object();
  if (!object) return;
  auto const members = *object;
  for (auto const& member : members) {
    collectWithoutEachKey(whole, (*object)[member.key()], collected);
    object->erase(member.key());
    collected.push_back(boost::json::serialize(whole));
    (*object)[member.key()] = member.value();
  }
}

TEST(HostileRecogniser, ResultWithoutAnyOfItsKeysIsDropped) {
  std::vector<std::string> messages;
  auto whole = boost::json::parse(finalMessage("no result"));
  collectWithoutEachKey(whole, whole, messages);
  ASSERT_EQ(messages.size(), 24U);
  WebSocketTestServer server({afterUpgrade([&](WebSocketPeer& peer) {
    for (auto const& message : messages) peer.text(message);
    peer.text(finalMessage("a result"));
  })});
  Streaming streaming(server.url());
  streaming.speakUntilPieces(1);
  EXPECT_THAT(streaming.reader().read(), ElementsAre("a result"));
}

TEST(HostileRecogniser, ThatEndsEachConnectionIsNotAskedWithoutPause) {
  WebSocketTestServer server({[](WebSocketPeer& peer) {
    peer.upgrade();
    peer.finish();
  }});
  auto const connections = [&] { return server.connections().size(); };
  Streaming streaming(server.url());
  auto const begin = std::chrono::steady_clock::now();
  streaming.speakUntil([&] { return std::chrono::steady_clock::now() - begin > 1500ms; });
  EXPECT_GE(connections(), 2U);
  EXPECT_LE(connections(), 6U);
  EXPECT_FALSE(streaming.reader().hasEnded());
}

TEST(HostileRecogniser, ThatReadsNoMoreIsAnErrorUnlessItIsStoppedBefore) {
  // More than the system takes off a sender that nobody reads from.
  constexpr std::size_t framesOfALongBuffer = 1 << 20;
  for (bool const isStopped : {true, false}) {
    WebSocketTestServer server({[](WebSocketPeer& peer) {
                                 say(peer);
                                 peer.waitForRelease();
                               }},
                               {.keepsBinaryMessages = false});
    {
      Streaming streaming(server.url(), {.send = 500ms});
      streaming.speakUntilPieces(1);
      for (int i = 0; i < 10; ++i) streaming.speak(48000, framesOfALongBuffer);
      if (isStopped) streaming.stop();
      EXPECT_TRUE(eventually([&] { return streaming.reader().hasEnded(); }));
      EXPECT_EQ(streaming.reader().read().front(), "said");
      if (!isStopped) EXPECT_EQ(codeOf(streaming.reader().error()), Code::timedOut);
    }
    server.release();
    EXPECT_TRUE(server.waitForEnd(1));
  }
}

TEST(HostileRecogniser, ThatIsSlowStillGetsEachByteInItsOrder) {
  constexpr std::int16_t bufferCount = 3000;
  std::string expected;
  std::string taken;
  WebSocketTestServer server({[](WebSocketPeer& peer) {
                               peer.readRequest();
                               peer.waitForRelease();
                               peer.upgrade();
                               peer.waitForRelease();
                               peer.waitForMessages(bufferCount);
                               peer.text(finalMessage("all of it"));
                             }},
                             {.identity = authority().localhost(),
                              .keepsBinaryMessages = false,
                              .onBinary = [&](std::string_view bytes) { taken += bytes; }});
  {
    Streaming streaming(server.url());
    for (std::int16_t number = 0; number < bufferCount; ++number) {
      // Of another size each time.
      std::vector<std::int16_t> samples(1000 + static_cast<std::size_t>(number % 100), number);
      for (auto const sample : samples) {
        expected += static_cast<char>(sample & 0xff);
        expected += static_cast<char>(sample >> 8);
      }
      streaming.speak(48000, std::move(samples));
      if (number == bufferCount / 3 || number == 2 * bufferCount / 3) server.release();
    }
    EXPECT_TRUE(eventually([&] { return !streaming.reader().read().empty(); }));
  }
  EXPECT_TRUE(server.waitForEnd(1));
  EXPECT_TRUE(taken == expected) << taken.size() << " bytes of " << expected.size();
}

/// What the recogniser got of a recording that was stopped in good order.
void expectFinalizedAndClosed(test::WebSocketConnection const& connection) {
  ASSERT_FALSE(connection.messages.empty());
  EXPECT_TRUE(std::ranges::any_of(connection.messages, [](auto const& message) {
    return message.isText && message.bytes == R"({ "type": "Finalize" })";
  }));
  EXPECT_EQ(connection.closeCode, 1001);
  EXPECT_EQ(connection.closeReason, "");
}

TEST(HostileRecogniser, StopsAtEachStageAreInOrder) {
  WebSocketScript const slow = [](WebSocketPeer& peer) {
    peer.readRequest();
    peer.waitForRelease();
    peer.upgrade();
  };
  WebSocketTestServer server({slow, say, say}, {.identity = authority().localhost()});
  Streaming streaming(server.url());
  streaming.stop();
  streaming.speak();

  streaming.start();
  streaming.speak();
  ASSERT_TRUE(
      server.waitUntil([](auto const& all) { return !all.empty() && !all[0].line.empty(); }));
  streaming.stop();
  EXPECT_FALSE(streaming.reader().hasEnded()) << "Finalize waits for the connection";
  server.release();
  EXPECT_TRUE(eventually([&] { return streaming.reader().hasEnded(); }));
  EXPECT_THAT(streaming.reader().read(), ElementsAre("end"));

  for (int i = 0; i < 2; ++i) {
    streaming.start();
    streaming.speakUntilPieces(1);
    streaming.stop();
    streaming.stop();
    EXPECT_TRUE(eventually([&] { return streaming.reader().hasEnded(); }));
    EXPECT_THAT(streaming.reader().read(), ElementsAre("said", "end"));
  }
  EXPECT_TRUE(server.waitForEnd(3));
  for (auto const& connection : server.connections()) expectFinalizedAndClosed(connection);
}

TEST(HostileRecogniser, RecordingsThatFollowEachOtherAtOnceKeepApart) {
  // The first answers as late as it can.
  WebSocketScript const late = [](WebSocketPeer& peer) {
    peer.upgrade();
    peer.waitForText("Finalize");
    peer.text(finalMessage("late"));
  };
  WebSocketTestServer server({late, late, say}, {.identity = authority().localhost()});
  Streaming streaming(server.url());
  for (std::size_t i = 0; i < 2; ++i) {
    streaming.speakUntil([&] {
      auto const connections = server.connections();
      return connections.size() > i && connections[i].messageCount > 0;
    });
    streaming.stop();
    streaming.start();
  }
  streaming.speakUntilPieces(1);
  streaming.stop();
  EXPECT_TRUE(eventually([&] { return streaming.reader().hasEnded(); }));
  EXPECT_THAT(streaming.reader().read(), ElementsAre("said", "end"));
  EXPECT_TRUE(server.waitForEnd(3));
  for (auto const& connection : server.connections()) expectFinalizedAndClosed(connection);
}

TEST(HostileRecogniser, TheSampleRateMayChangeAtEachStage) {
  auto const isConnected = [](std::size_t count) {
    return [count](std::vector<test::WebSocketConnection> const& all) {
      return all.size() >= count && !all[count - 1].line.empty();
    };
  };
  WebSocketScript const slow = [](WebSocketPeer& peer) {
    peer.readRequest();
    peer.waitForRelease();
    peer.upgrade();
  };
  WebSocketTestServer server({slow, say, afterText(finish), say, say},
                             {.identity = authority().localhost()});
  Streaming streaming(server.url());
  streaming.speak(8000);
  ASSERT_TRUE(server.waitUntil(isConnected(1)));
  streaming.speak(16000);  // while it connects
  server.release();
  streaming.speakUntil([&] { return streaming.reader().read().size() == 1; }, 16000);
  // After text, and then in the moment of a drop.
  streaming.speakUntil([&] { return streaming.reader().read().size() == 2; }, 44100);
  streaming.speakUntil(
      [&] {
        auto const last = server.connections().back();
        return last.line.find("sample_rate=48000&") != std::string::npos && last.messageCount > 0;
      },
      48000);
  streaming.stop();
  EXPECT_TRUE(eventually([&] { return streaming.reader().hasEnded(); }));
  EXPECT_EQ(streaming.reader().read().back(), "end");
  EXPECT_TRUE(server.waitForEnd(server.connections().size()));

  auto const connections = server.connections();
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(connections[i].closeCode, 1001) << i;
  EXPECT_THAT(connections[0].line, testing::HasSubstr("sample_rate=8000&"));
  EXPECT_THAT(connections[1].line, testing::HasSubstr("sample_rate=16000&"));
  EXPECT_THAT(connections[2].line, testing::HasSubstr("sample_rate=44100&"));
  EXPECT_EQ(connections.back().closeCode, 1001);
}

}  // namespace
}  // namespace vek
