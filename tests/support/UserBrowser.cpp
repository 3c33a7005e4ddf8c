// SPDX-License-Identifier: MIT
#include "support/UserBrowser.hpp"

#include <boost/json.hpp>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Files.hpp"
#include "platform/Folders.hpp"
#include "support/ChildProcess.hpp"

namespace vek::test {

namespace {

constexpr std::chrono::seconds patience{90};

/// Runs a program as the user, to its end.
void run(std::vector<std::string> words, UserBrowser::Environment const& environment,
         std::filesystem::path const& log) {
  std::vector<std::string> all = {"env"};
  for (auto const& [name, value] : environment) all.push_back(name + "=" + value);
  all.insert(all.end(), words.begin(), words.end());
  ChildProcess program(all, log);
  while (program.readLine()) continue;
}

}  // namespace

UserBrowser::UserBrowser(LocalServices const& services, std::filesystem::path folder,
                         Environment& environment)
    : services_(services), folder_(std::move(folder)) {
  auto const driver = std::getenv("VEK_BROWSER_DRIVER");
  // No desktop but the user's own files, which say what opens pages and redirects.
  environment.insert(
      {{"HOME", folder_.string()},
       {"XDG_DATA_DIRS", folder_ / "nothing"},
       {"XDG_CONFIG_DIRS", folder_ / "nothing"},
       {"XDG_CURRENT_DESKTOP", ""},
       {"BROWSER", ""},
       {"VEK_BROWSER_DRIVER", driver ? driver : (dataHome() / "vek/browser-driver").string()}});
  std::filesystem::path const data = environment.at("XDG_DATA_HOME");
  std::filesystem::create_directories(data / "applications");
  std::filesystem::create_directories(environment.at("XDG_CONFIG_HOME"));
  std::filesystem::create_directory_symlink(services.folder(), data / "vek-services");
  std::ofstream(data / "applications/browser.desktop")
      << "[Desktop Entry]\nType=Application\nName=Browser\nMimeType=x-scheme-handler/https;\n"
      << "Exec=node " VEK_BROWSER " " << folder_.string() << " %u\n";
  auto const log = folder_ / "browser-log";
  run({"xdg-mime", "default", "browser.desktop", "x-scheme-handler/https"}, environment, log);
  run({VEK_REGISTER_LOGIN, "--yes", "--program", VEKCTL_PROGRAM}, environment, log);
}

void UserBrowser::sendFor(std::string const& errand) const {
  auto const [name, password] = services_.account();
  std::ofstream(folder_ / "errand") << boost::json::serialize(
      boost::json::object{{"action", errand}, {"name", name}, {"password", password}});
}

std::string UserBrowser::seen() const {
  std::ofstream(folder_ / "done") << "yes";
  auto const end = std::chrono::steady_clock::now() + patience;
  while (std::chrono::steady_clock::now() < end) {
    if (auto const text = readFile(folder_ / "seen")) return *text;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return "nothing: " + readFile(folder_ / "browser-log").value_or("");
}

}  // namespace vek::test
