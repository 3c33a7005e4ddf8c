// SPDX-License-Identifier: MIT
#include "platform/Log.hpp"

#include <thread>
#include <vector>

#include "support/Environment.hpp"

namespace vek {
namespace {

TEST(Log, DebugMessageIsNotBuiltUnlessAskedFor) {
  std::vector<std::string> lines;
  int built = 0;
  auto const message = [&] {
    ++built;
    return std::string("the token");
  };
  LogSink const sink = [&](LogLevel level, std::string_view category, std::string_view text) {
    lines.push_back(std::string(category) + " " + std::string(name(level)) + " " +
                    std::string(text));
  };
  Logger const logger("APIClient");
  {
    LogRedirection const redirection(sink, LogLevel::notice);
    logger.debug(message);
    logger.notice("begun");
  }
  EXPECT_EQ(built, 0);
  LogRedirection const redirection(sink, LogLevel::debug);
  logger.debug(message);
  EXPECT_EQ(built, 1);
  EXPECT_THAT(lines, testing::ElementsAre("APIClient notice begun", "APIClient debug the token"));
}

TEST(Log, LevelComesFromTheEnvironment) {
  for (auto const& [text, level] :
       {std::pair{"debug", LogLevel::debug}, std::pair{"error", LogLevel::error},
        std::pair{"", LogLevel::notice}, std::pair{"DEBUG!", LogLevel::notice}}) {
    test::EnvironmentVariable const variable("VEK_LOG", text);
    EXPECT_EQ(logLevelFromEnvironment(), level) << text;
  }
}

TEST(Log, LeavesOutWhatSteersATerminal) {
  testing::internal::CaptureStderr();
  systemLogSink()(LogLevel::error, "AuthClient", "a\x1b[2Jb\r\x7f\a\n\tc \xc3\xa4");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "com.vek.app [AuthClient] error: a[2Jb\n\tc \xc3\xa4\n");
}

TEST(Log, LinesOfManyThreadsStayWhole) {
  testing::internal::CaptureStderr();
  {
    LogRedirection const redirection(systemLogSink(), LogLevel::notice);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([] {
        for (int j = 0; j < 200; ++j) Logger("recorder").error("a message of several words");
      });
    }
  }
  std::istringstream lines(testing::internal::GetCapturedStderr());
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    ASSERT_EQ(line, "com.vek.app [recorder] error: a message of several words");
  }
  EXPECT_EQ(count, 800);
}

}  // namespace
}  // namespace vek
