// SPDX-License-Identifier: MIT
// The main job with the built programs: speech in, text out, stored.
#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "app/ProgramTests.hpp"
#include "platform/Files.hpp"

namespace vek::test {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// Where no recogniser listens.
constexpr auto* placeOfNobody = "wss://localhost:1";

class MainJob : public ProgramTests {};

TEST_F(MainJob, StoresWhatItPrintsAndReadsItBack) {
  auto const result = run({"record", "--from", speechFile("hts-slt-s03")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, "Recording. Ctrl-C stops.\n");
  Recorded const recorded(result.output);
  expectSaid("hts-slt-s03", recorded.text);
  EXPECT_THAT(storedTranscripts(), ElementsAre(recorded.id));

  auto const shown = run({"show", recorded.id});
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(shown.messages, "");
  EXPECT_THAT(shown.output, AllOf(StartsWith(recorded.text + "\n\n"), HasSubstr("# ")));
  EXPECT_THAT(run({"transcripts"}).output,
              MatchesRegex(recorded.id + "  [0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+  -\n"));
}

TEST_F(MainJob, SpeaksToProgramsInJSON) {
  VekctlRun recording(surroundings, {"record", "--json", "--from", speechFile("hts-slt-s01")});
  EXPECT_EQ(recording.wait(), 0);
  std::string text;
  bool hasPartial = false;
  boost::json::object last;
  for (auto const& line : recording.lines()) {
    last = boost::json::parse(line).as_object();
    hasPartial = hasPartial || last.contains("partial");
    if (auto const* piece = last.if_contains("piece")) {
      if (!text.empty()) text += '\n';
      text += piece->as_string();
    }
  }
  EXPECT_TRUE(hasPartial);
  EXPECT_TRUE(last.at("stored").as_bool());
  EXPECT_EQ(storedText(last.at("transcript_id").as_string().c_str()), text);
  EXPECT_EQ(recording.messages(), "");
}

TEST_F(MainJob, ShowsThePendingTextInPlaceOnATerminal) {
  VekctlRun recording(surroundings, {"record", "--from", speechFile("hts-slt-s04")},
                      VekctlRun::Messages::toTerminal, 40);
  EXPECT_EQ(recording.wait(), 0);
  auto const& shown = recording.messages();
  EXPECT_THAT(shown, HasSubstr("…"));
  EXPECT_THAT(shown, Not(HasSubstr("com.vek.app")));
  // No line is as wide as the terminal, or it would be left behind.
  std::string const change = "\r\x1b[K";
  for (auto begin = shown.find(change); begin != std::string::npos;) {
    begin += change.size();
    auto const end = shown.find(change, begin);
    auto const line = shown.substr(begin, end - begin);
    auto const colours = std::string("\x1b[2m\x1b[0m").size();
    auto const isInner = [](char byte) { return (byte & 0xC0) == 0x80; };
    if (!line.empty()) {
      EXPECT_LT(line.size() - colours - std::size_t(std::ranges::count_if(line, isInner)), 40U);
    }
    begin = end;
  }
  EXPECT_TRUE(shown.ends_with(change));
  EXPECT_EQ(storedText(Recorded(recording.output()).id), Recorded(recording.output()).text);
}

TEST_F(MainJob, StopsInTimeAndStoresWhatWasHeardSoFar) {
  for (bool const isToldByTime : {true, false}) {
    std::vector<std::string> arguments = {"record", "--from",
                                          speechFile("../../assets/sample-call")};
    if (isToldByTime) arguments.insert(arguments.end(), {"--for", "0.5"});
    VekctlRun recording(surroundings, arguments);
    if (!isToldByTime) {
      ASSERT_TRUE(recording.waitForOutput("\n"));
      recording.signal(SIGINT);
    }
    EXPECT_EQ(recording.wait(), 0) << recording.messages();
    Recorded const recorded(recording.output());
    EXPECT_EQ(storedText(recorded.id), recorded.text);
    EXPECT_THAT(recorded.text, Not(HasSubstr("Goodbye")));
  }
}

TEST_F(MainJob, ASignalAtAnyMomentEndsATranscription) {
  using std::chrono_literals::operator""ms;
  for (auto const& [signal, moment] : {std::pair{SIGINT, 100ms},
                                       {SIGINT, 300ms},
                                       {SIGINT, 600ms},
                                       {SIGTERM, 400ms},
                                       {SIGHUP, 500ms}}) {
    VekctlRun transcription(surroundings, {"transcribe", speechFile("jfk")});
    std::this_thread::sleep_for(moment);
    transcription.signal(signal);
    // A signal that comes before the program watches for it ends it in the system's own way.
    EXPECT_THAT(transcription.wait(), AnyOf(1, 128 + signal));
  }
}

TEST_F(MainJob, TwoAtOnceDoNotMixTheirTexts) {
  VekctlRun one(surroundings, {"record", "--from", speechFile("hts-slt-s02")});
  VekctlRun two(surroundings, {"record", "--from", speechFile("hts-slt-s06")});
  EXPECT_EQ(one.wait(), 0) << one.messages();
  EXPECT_EQ(two.wait(), 0) << two.messages();
  expectSaid("hts-slt-s02", storedText(Recorded(one.output()).id));
  expectSaid("hts-slt-s06", storedText(Recorded(two.output()).id));
  EXPECT_THAT(storedTranscripts(), SizeIs(2));
}

TEST_F(MainJob, TranscribesFilesWithoutABackend) {
  services.stop();
  VekctlRun transcribing(surroundings, {"transcribe", speechFile("hts-slt-s01"), "no-such.wav",
                                        speechFile("hts-slt-s03")});
  EXPECT_EQ(transcribing.wait(), 1);
  ASSERT_THAT(transcribing.lines(), SizeIs(2));
  expectSaid("hts-slt-s01", transcribing.lines()[0]);
  expectSaid("hts-slt-s03", transcribing.lines()[1]);
  EXPECT_EQ(transcribing.messages(),
            "error: \"no-such.wav\" can't be read: No such file or directory.\n");
}

/// The settings of the user, as text.
class Settings : public ProgramTests {
 protected:
  Settings() { std::filesystem::create_directories(file.parent_path()); }
  void write(std::string const& text) const { std::ofstream(file) << text; }

  std::filesystem::path const file = surroundings.folder / "config" / "vek" / "settings.json";
};

TEST_F(Settings, AProviderOfOneRunIsNotTheSetting) {
  std::string const setting = R"({"recognitionProvider":"\"apple\""})";
  write(setting);
  surroundings.deployment["recogniserURL"] = placeOfNobody;
  auto const result =
      run({"record", "--provider", "deepgram", "--from", speechFile("hts-slt-s03")});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.messages, HasSubstr("error: Could not connect to the server"));
  EXPECT_EQ(readFile(file), setting);
}

TEST_F(Settings, TheProviderThatTheyNameIsUsed) {
  write(R"({"recognitionProvider":"\"deepgram\""})");
  surroundings.deployment["recogniserURL"] = placeOfNobody;
  EXPECT_THAT(run({"record", "--from", speechFile("hts-slt-s03")}).messages,
              HasSubstr("error: Could not connect to the server"));
}

TEST_F(Settings, WhatIsSetIsToldAndChosen) {
  EXPECT_EQ(run({"updates"}).output, "on\n");
  EXPECT_EQ(run({"updates", "off"}).output, "off\n");
  EXPECT_EQ(run({"updates", "--json"}).output, "{\"updates\":false}\n");
  EXPECT_EQ(readFile(file), "{\"automaticallyChecksForUpdates\":\"false\"}\n");
  std::filesystem::remove(file);

  EXPECT_EQ(run({"provider"}).output, "apple\n");
  EXPECT_EQ(run({"provider", "deepgram"}).output, "deepgram\n");
  EXPECT_EQ(readFile(file), "{\"recognitionProvider\":\"\\\"deepgram\\\"\"}\n");
  EXPECT_EQ(run({"provider", "--json"}).output, "{\"provider\":\"deepgram\"}\n");

  std::filesystem::remove_all(file);
  std::filesystem::create_directory(file);
  auto const refused = run({"provider", "apple"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.messages, StartsWith("error: "));
}

TEST_F(Settings, AProviderThatNobodyKnowsIsTheDefault) {
  write(R"({"recognitionProvider":"\"oracle\""})");
  auto const result = run({"record", "--from", speechFile("hts-slt-s03")});
  EXPECT_EQ(result.status, 0);
  expectSaid("hts-slt-s03", Recorded(result.output).text);
}

TEST_F(MainJob, TheLogHoldsNeitherTextNorToken) {
  surroundings.environment["VEK_LOG"] = "notice";
  auto const good = run({"record", "--from", speechFile("hts-slt-s03")});
  EXPECT_EQ(good.status, 0);
  auto const withoutMicrophone = run({"record"});
  EXPECT_THAT(withoutMicrophone.messages, HasSubstr("com.vek.app [recorder] error: "));
  services.stop();
  auto const withoutServices = run({"record"});
  EXPECT_THAT(withoutServices.messages, HasSubstr("error: Could not connect"));
  auto const log = good.messages + withoutMicrophone.messages + withoutServices.messages;
  for (auto const& secret : {services.token(), std::string("plan"), std::string("users")}) {
    EXPECT_THAT(log, Not(HasSubstr(secret)));
  }
}

TEST_F(MainJob, TheDebugLogShowsRequestsAsCommands) {
  surroundings.environment["VEK_LOG"] = "debug";
  EXPECT_THAT(run({"transcripts"}).messages,
              HasSubstr("curl \"" + services.url() + "/api/v1/agents/customers\""));
}

}  // namespace
}  // namespace vek::test
