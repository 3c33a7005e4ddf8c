// SPDX-License-Identifier: MIT
#include "platform/UserDefaults.hpp"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Files.hpp"
#include "platform/Log.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using test::TemporaryFolder;

UserDefaultsKey<int> const size{
    .name = "size",
    .defaultValue = 7,
    .serialize = [](int value) { return std::to_string(value); },
    .deserialize = [](std::string_view text) -> std::optional<int> {
      if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return {};
      return std::stoi(std::string(text));
    }};

TEST(UserDefaults, AnotherProgramsChangeIsSeenAtOnce) {
  TemporaryFolder const folder;
  UserDefaults ours(folder / "vek/settings.json");
  UserDefaults theirs(folder / "vek/settings.json");
  EXPECT_EQ(size.read(ours), 7);
  EXPECT_EQ(ours.string("size"), "7") << "the default is registered";
  EXPECT_EQ(theirs.string("size"), std::nullopt) << "and not stored";
  size.write(theirs, 12);
  theirs.set("other", "\"text\"");
  EXPECT_EQ(size.read(ours), 12);
  size.write(ours, 13);
  EXPECT_EQ(theirs.string("other"), "\"text\"");

  struct stat status{};
  ASSERT_EQ(stat((folder / "vek/settings.json").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(UserDefaults, DamageReadsAsTheDefaultAndIsToldOnce) {
  TemporaryFolder const folder;
  std::vector<std::string> lines;
  LogRedirection const redirection(
      [&](LogLevel, std::string_view, std::string_view message) { lines.emplace_back(message); },
      LogLevel::notice);
  UserDefaults defaults(folder / "settings.json");
  for (char const* content :
       {"", "[1]", R"({"size":"many"})", R"({"size":9})", R"({"size":"x","other":1})"}) {
    replaceFile(folder / "settings.json", content);
    lines.clear();
    EXPECT_EQ(size.read(defaults), 7) << content;
    EXPECT_EQ(size.read(defaults), 7) << content;
    EXPECT_EQ(lines.size(), 1U) << content;
  }
  size.write(defaults, 5);
  EXPECT_EQ(size.read(defaults), 5);
  EXPECT_THAT(*readFile(folder / "settings.json"), testing::HasSubstr("\"other\":1"));
}

TEST(UserDefaults, AFileThatOthersKeepEndsAWrite) {
  TemporaryFolder const folder;
  FileLock const kept(folder / "settings.json.lock");
  UserDefaults hasty(folder / "settings.json", std::chrono::milliseconds(20));
  EXPECT_THAT([&] { size.write(hasty, 6); }, testing::ThrowsMessage<std::system_error>(
                                                 testing::HasSubstr("another program keeps")));
  EXPECT_EQ(size.read(hasty), 7);
}

TEST(UserDefaults, ProcessesThatWriteAtOnceLoseNothing) {
  TemporaryFolder const folder;
  constexpr int processes = 4;
  constexpr int keys = 25;
  std::vector<pid_t> children;
  for (int process = 0; process < processes; ++process) {
    pid_t const child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      UserDefaults defaults(folder / "settings.json", std::chrono::minutes(1));
      for (int key = 0; key < keys; ++key) {
        defaults.set(std::to_string(process) + "." + std::to_string(key), "value");
      }
      _exit(0);
    }
    children.push_back(child);
  }
  for (pid_t const child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  UserDefaults const defaults(folder / "settings.json");
  for (int process = 0; process < processes; ++process) {
    for (int key = 0; key < keys; ++key) {
      EXPECT_EQ(defaults.string(std::to_string(process) + "." + std::to_string(key)), "value");
    }
  }
  auto const entries = std::filesystem::directory_iterator(folder.path());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 2) << "the settings and their lock";
}

}  // namespace
}  // namespace vek
