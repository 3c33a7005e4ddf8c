// SPDX-License-Identifier: MIT
// Recordings whose speech the local services recognise.
#include <csignal>

#include "app/ProgramTests.hpp"
#include "support/LiveMicrophone.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;

class HostedRecogniser : public ProgramTests {
 protected:
  HostedRecogniser() { surroundings.environment["PULSE_SERVER"] = server.address(); }

  /// Returns once the last word has been printed.
  static void say(std::string const& name, std::string const& lastWord, LiveMicrophone& microphone,
                  VekctlRun& recording) {
    microphone.say(speechSample(name).samples);
    EXPECT_TRUE(recording.waitForOutput(lastWord)) << recording.messages();
  }

  SoundServer server;
};

TEST_F(HostedRecogniser, AFileIsRecognisedToItsEndAndStored) {
  auto const result =
      run({"record", "--provider", "deepgram", "--from", speechFile("hts-slt-s03")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, "Recording. Ctrl-C stops.\n");
  Recorded const recorded(result.output);
  expectSaid("hts-slt-s03", recorded.text);
  EXPECT_EQ(storedText(recorded.id), recorded.text);
  EXPECT_THAT(services.log(), HasSubstr("a stream of 16000 Hz with 1 channels has begun"));
}

TEST_F(HostedRecogniser, WhatIsSpokenIsStored) {
  EXPECT_EQ(run({"provider", "deepgram"}).status, 0);
  LiveMicrophone microphone(server, "desk");
  VekctlRun recording(surroundings, {"record"});
  say("hts-slt-s02", "March", microphone, recording);
  recording.signal(SIGINT);
  EXPECT_EQ(recording.wait(), 0) << recording.messages();
  Recorded const recorded(recording.output());
  expectSaid("hts-slt-s02", recorded.text);
  EXPECT_EQ(storedText(recorded.id), recorded.text);
  EXPECT_THAT(services.log(), HasSubstr("a stream of 16000 Hz with 1 channels has begun"));
}

TEST_F(HostedRecogniser, ServicesThatDieOnTheWayEndTheRecordingWithTheReason) {
  LiveMicrophone microphone(server, "desk");
  VekctlRun recording(surroundings, {"record", "--provider", "deepgram"});
  say("hts-slt-s02", "March", microphone, recording);
  services.kill();
  EXPECT_EQ(recording.wait(), 1);
  EXPECT_THAT(recording.messages(), HasSubstr("error: Could not connect to the server"));
}

TEST_F(HostedRecogniser, ServicesThatComeBackAreUsedOrTheReasonIsTold) {
  LiveMicrophone microphone(server, "desk");
  VekctlRun recording(surroundings, {"record", "--provider", "deepgram"});
  say("hts-slt-s02", "March", microphone, recording);
  services.kill();
  services.start();
  // Which of the two depends on how soon they are back.
  microphone.say(speechSample("hts-slt-s06").samples);
  bool const goesOn = recording.waitForOutput("contract");
  if (goesOn) {
    recording.signal(SIGINT);
    EXPECT_EQ(recording.wait(), 0) << recording.messages();
    Recorded const recorded(recording.output());
    EXPECT_EQ(storedText(recorded.id), recorded.text);
  } else {
    EXPECT_EQ(recording.wait(), 1);
    EXPECT_THAT(recording.messages(), HasSubstr("error: Could not connect to the server"));
  }
  auto const next = run({"record", "--provider", "deepgram", "--from", speechFile("hts-slt-s03")});
  EXPECT_EQ(next.status, 0) << next.messages;
}

}  // namespace
}  // namespace vek::test
