// SPDX-License-Identifier: MIT
// Recordings from a microphone while it is spoken into, and what may befall them.
#include <sys/resource.h>

#include <csignal>

#include "app/ProgramTests.hpp"
#include "support/DatabaseIntegrity.hpp"
#include "support/LiveMicrophone.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;

/// Something that is said, and the word that ends its text.
struct Sentence {
  std::string name;
  std::string lastWord;
};
Sentence const first{"hts-slt-s02", "March"};
Sentence const second{"hts-slt-s04", "us."};
Sentence const third{"hts-slt-s06", "contract"};

class LiveRecording : public ProgramTests {
 protected:
  LiveRecording() { surroundings.environment["PULSE_SERVER"] = server.address(); }

  static void say(Sentence const& sentence, LiveMicrophone& microphone, VekctlRun& recording) {
    microphone.say(speechSample(sentence.name).samples);
    EXPECT_TRUE(recording.waitForOutput(sentence.lastWord)) << recording.messages();
  }
  /// Waits until the backend has it.
  void expectStored(Sentence const& sentence) const {
    auto const id = storedTranscripts().at(0);
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (storedText(id).find(sentence.lastWord) == std::string::npos) {
      ASSERT_LT(std::chrono::steady_clock::now(), deadline);
    }
  }
  /// Stops the recording; gives its text when all of it was stored as it was printed.
  std::string finish(VekctlRun& recording) const {
    recording.signal(SIGINT);
    EXPECT_EQ(recording.wait(), 0) << recording.messages();
    Recorded const recorded(recording.output());
    EXPECT_EQ(storedText(recorded.id), recorded.text);
    return recorded.text;
  }
  static void expectAll(std::vector<Sentence> const& sentences, std::string const& text) {
    std::string said;
    for (auto const& sentence : sentences) said += speechSample(sentence.name).transcript + ' ';
    EXPECT_LE(wrongWords(said, text), 2 * sentences.size()) << text;
  }

  SoundServer server;
};

TEST_F(LiveRecording, WhatIsSpokenIsStored) {
  LiveMicrophone microphone(server, "desk");
  VekctlRun recording(surroundings, {"record"});
  say(first, microphone, recording);
  say(second, microphone, recording);
  expectAll({first, second}, finish(recording));
  EXPECT_EQ(recording.messages(), "Recording. Ctrl-C stops.\n");
}

TEST_F(LiveRecording, GoesOnWhenTheSoundServerComesBack) {
  auto microphone = std::make_optional<LiveMicrophone>(server, "desk");
  VekctlRun recording(surroundings, {"record"});
  say(first, *microphone, recording);
  microphone.reset();
  server.kill();
  server.start();
  microphone.emplace(server, "other");
  say(second, *microphone, recording);
  expectAll({first, second}, finish(recording));
}

TEST_F(LiveRecording, APieceGoesWithTheNextWhenTheServicesWereAway) {
  LiveMicrophone microphone(server, "desk");
  VekctlRun recording(surroundings, {"record"});
  say(first, microphone, recording);
  expectStored(first);
  services.kill();
  say(second, microphone, recording);
  EXPECT_TRUE(recording.waitForMessage("error: Could not connect to the server"));
  services.start();
  say(third, microphone, recording);
  expectAll({first, second, third}, finish(recording));
}

TEST_F(LiveRecording, APieceGoesWithTheNextWhenTheDiskWasFull) {
  rlimit const unlimited{RLIM_INFINITY, RLIM_INFINITY};
  rlimit const full{4096, RLIM_INFINITY};
  LiveMicrophone microphone(server, "desk");
  VekctlRun recording(surroundings, {"record"});
  say(first, microphone, recording);
  expectStored(first);
  ASSERT_EQ(prlimit(services.pid(), RLIMIT_FSIZE, &full, nullptr), 0);
  say(second, microphone, recording);
  EXPECT_TRUE(recording.waitForMessage(
      "Code: 507. Additional info: There is no room left to store this.\n"));
  VekctlRun other(surroundings, {"record"});
  EXPECT_EQ(other.wait(), 1);
  EXPECT_THAT(other.messages(), HasSubstr("Code: 507."));

  ASSERT_EQ(prlimit(services.pid(), RLIMIT_FSIZE, &unlimited, nullptr), 0);
  say(third, microphone, recording);
  expectAll({first, second, third}, finish(recording));
  services.kill();
  EXPECT_EQ(databaseIntegrity(services.folder() / "backend.sqlite"), "ok");
}

/// A recording that has no microphone, for the reason in the log.
class WithoutMicrophone : public LiveRecording {
 protected:
  void tells(std::string const& cause) const {
    auto const result = run({"record"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.messages,
                HasSubstr("com.vek.app [recorder] error: engine couldn't start: " + cause));
    EXPECT_TRUE(result.messages.ends_with("\nerror: Audio engine error.\n")) << result.messages;
    EXPECT_EQ(Recorded(result.output).text, "");
  }
};

TEST_F(WithoutMicrophone, NoSoundServer) {
  server.kill();
  tells("No sound server could be reached.");
}

TEST_F(WithoutMicrophone, NoDeviceAtAll) {
  tells("No microphone was found.");
}

TEST_F(WithoutMicrophone, OnlyWhatTheSpeakersPlay) {
  server.load("module-null-sink");
  tells("No microphone was found.");
}

}  // namespace
}  // namespace vek::test
