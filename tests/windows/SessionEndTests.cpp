// SPDX-License-Identifier: MIT
// The end of the program in the middle of a recording, however it is told that it is over.
#include <gmock/gmock.h>

#include <csignal>
#include <functional>

#include "support/LiveMicrophone.hpp"
#include "support/StoredCredentials.hpp"
#include "windows/Deployment.hpp"
#include "windows/ScreenReader.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;
using testing::TestWithParam;

struct End {
  std::string name;
  std::function<void(Desktop&, ChildProcess const& vek)> come;

  friend void PrintTo(End const& end, std::ostream* stream) { *stream << end.name; }
};

/// What is said like that one after the other is one piece to a recogniser, for its first ten
/// seconds.
std::vector<std::int16_t> withoutPause(std::string const& name) {
  auto samples = waveSamples(std::filesystem::path(VEK_SAMPLE_SPEECH) / name);
  constexpr int tenth = LiveMicrophone::rate / 10;
  samples.erase(samples.end() - 3 * tenth, samples.end());
  samples.erase(samples.begin(), samples.begin() + 2 * tenth);
  return samples;
}

class SessionEnd : public TestWithParam<End> {
 protected:
  SessionEnd() {
    desktop.environment["PULSE_SERVER"] = server.address();
    deploy(desktop, services);
    storeCredentials(services, desktop.folder() / "data");
  }

  LocalServices const services;
  SoundServer const server;
  LiveMicrophone microphone{server, "desk"};
  Desktop desktop;
  ScreenReader const screen{desktop};
};

TEST_P(SessionEnd, StoresWhatWasSaidAndEndsCleanly) {
  auto const vek = desktop.startVek();
  ASSERT_TRUE(screen.shows("push button: Record")) << desktop.log();
  ASSERT_TRUE(screen.press("Record"));
  ASSERT_TRUE(eventually([&] { return !server.pactl("list short source-outputs").empty(); }));
  for (int i = 0; i < 3; ++i) microphone.say(withoutPause("hts-slt-s02.wav"));
  ASSERT_TRUE(screen.reads("March")) << screen.tree() << desktop.log();

  GetParam().come(desktop, *vek);
  EXPECT_EQ(vek->wait(), 0) << desktop.log();
  EXPECT_THAT(desktop.run({VEKCTL_PROGRAM, "transcripts", "--text", "March", "--json"}),
              HasSubstr("transcript_id"))
      << desktop.log();
}

INSTANTIATE_TEST_SUITE_P(
    Of, SessionEnd,
    testing::Values(End{"TheProgram", [](Desktop&, auto const& vek) { vek.signal(SIGTERM); }},
                    End{"TheSessionBus", [](Desktop& desktop, auto&) { desktop.endSessionBus(); }},
                    End{"TheDisplay", [](Desktop& desktop, auto&) { desktop.endDisplay(); }}),
    [](auto const& end) { return end.param.name; });

}  // namespace
}  // namespace vek::test
