// SPDX-License-Identifier: MIT
// What a user does with the program on the first day, with nothing scripted between its parts.
#include <gmock/gmock.h>

#include "support/LiveMicrophone.hpp"
#include "support/UserBrowser.hpp"
#include "support/WordErrors.hpp"
#include "windows/Deployment.hpp"
#include "windows/ScreenReader.hpp"

namespace vek::test {
namespace {

constexpr std::string_view sentence = "hts-slt-s02.wav";
constexpr auto lastWord = "March";

SpeechSample spoken() {
  for (auto& sample : speechSamples(VEK_SAMPLE_SPEECH)) {
    if (sample.name == sentence) return sample;
  }
  throw std::runtime_error("the sentence is missing");
}

class Journey : public testing::Test {
 protected:
  Journey() {
    desktop.environment["PULSE_SERVER"] = server.address();
    deploy(desktop, services);
  }

  void signIn() {
    browser.sendFor("sign in");
    ASSERT_TRUE(screen.shows("push button: Login")) << desktop.log();
    ASSERT_TRUE(screen.press("Login"));
    ASSERT_TRUE(screen.shows("push button: Record")) << desktop.log();
    EXPECT_EQ(browser.seen(), "the form");
  }
  /// Starts and stops a recording by a shortcut of the desktop.
  void toggle() { EXPECT_EQ(desktop.start({VEKCTL_PROGRAM, "toggle"})->wait(), 0); }
  [[nodiscard]] bool isListening() const {
    return eventually([&] { return !server.pactl("list short source-outputs").empty(); });
  }
  /// What the list shows of its one transcript.
  [[nodiscard]] std::string listedText() const {
    constexpr std::string_view before = ", no customer: ";
    auto const tree = screen.tree();
    auto const place = tree.find(before);
    if (place == std::string::npos) return {};
    auto const begin = place + before.size();
    return tree.substr(begin, tree.find('\n', begin) - begin);
  }

  LocalServices const services;
  SoundServer const server;
  LiveMicrophone microphone{server, "desk"};
  Desktop desktop;
  ScreenReader const screen{desktop};
  UserBrowser const browser{services, desktop.folder(), desktop.environment};
};

TEST_F(Journey, FromTheFirstStartToATranscriptInTheList) {
  auto const vek = desktop.startVek();
  ASSERT_NO_FATAL_FAILURE(signIn());

  ASSERT_TRUE(screen.press("Record"));
  ASSERT_TRUE(screen.shows("push button: Stop recording")) << desktop.log();
  ASSERT_TRUE(isListening());
  auto const speech = spoken();
  microphone.say(speech.samples);
  EXPECT_TRUE(screen.reads(lastWord)) << screen.tree() << desktop.log();

  ASSERT_TRUE(screen.press("Stop recording"));
  ASSERT_TRUE(screen.shows("push button: Record"));
  ASSERT_TRUE(screen.press("Show transcripts"));
  EXPECT_TRUE(eventually([&] { return listedText().find(lastWord) != std::string::npos; }))
      << screen.tree() << desktop.log();
  EXPECT_LE(wrongWords(speech.transcript, listedText()), 2U) << listedText();

  toggle();
  EXPECT_TRUE(screen.shows("push button: Stop recording")) << desktop.log();
  toggle();
  EXPECT_TRUE(screen.shows("push button: Record")) << desktop.log();
}

}  // namespace
}  // namespace vek::test
