// SPDX-License-Identifier: MIT
// An opened transcript, from the list to its customer, with a backend and a model that fail.
#include <gmock/gmock.h>

#include <sstream>

#include "support/BackendClient.hpp"
#include "support/ChatEndpoint.hpp"
#include "support/Environment.hpp"
#include "support/StoredCredentials.hpp"
#include "windows/Deployment.hpp"
#include "windows/ScreenReader.hpp"

namespace vek::test {
namespace {

constexpr char worth[] =
    R"({"choices": [{"message": {"role": "assistant", "content": "# Worth\n\nThe **invoice** goes out again."}}]})";

class TranscriptWindow : public testing::Test {
 protected:
  TranscriptWindow() {
    deploy(desktop, services);
    storeCredentials(services, desktop.folder() / "data");
  }

  /// Opens a transcript whose content did not come, from the list.
  void openWhatFailed() {
    BackendClient client(services);
    client.append(client.create(), "My invoice has the old address.");
    endpoint.isSilent = true;
    vek = desktop.startVek();
    ASSERT_TRUE(reader.shows("push button: Show transcripts")) << reader.tree() << desktop.log();
    ASSERT_TRUE(reader.press("Show transcripts"));
    ASSERT_TRUE(eventually([&] { return endpoint.count > 0; })) << "the content is waited for";
    services.kill();
    auto const failed = cell("Error loading transcript");
    services.start();
    title = failed.substr(0, failed.find(", no customer"));
    ASSERT_TRUE(reader.press(failed));
    ASSERT_TRUE(reader.shows("frame: " + title)) << reader.tree();
    ASSERT_TRUE(reader.shows("push button: Retry")) << reader.tree();
  }
  [[nodiscard]] bool hides(std::string const& thing) const {
    return eventually(
        [&] { return ("\n" + reader.tree()).find("\n" + thing + "\n") == std::string::npos; });
  }
  /// What the cell says whose transcript has this text.
  [[nodiscard]] std::string cell(std::string const& text) const {
    EXPECT_TRUE(reader.reads(": " + text + "\n")) << reader.tree();
    return thing("push button: ", ": " + text);
  }
  /// The name of the first thing that begins and ends so.
  [[nodiscard]] std::string thing(std::string const& begin, std::string const& end) const {
    std::istringstream lines(reader.tree());
    for (std::string line; std::getline(lines, line);)
      if (line.starts_with(begin) && line.ends_with(end)) return line.substr(begin.size());
    ADD_FAILURE() << begin << end << " is not on the screen";
    return "";
  }

  EnvironmentVariable const key{"VEK_CHAT_KEY", "chat key"};
  ChatEndpoint endpoint;
  LocalServices services{{"--chat-completions", endpoint.url(), "--chat-model", "small"}};
  Desktop desktop;
  ScreenReader reader{desktop};
  std::unique_ptr<ChildProcess> vek;
  std::string title;
};

TEST_F(TranscriptWindow, ShowsWhatCameAfterAFailureAndItsCustomerInTheListToo) {
  openWhatFailed();
  EXPECT_TRUE(reader.shows("description: 1 transcript without a customer")) << reader.tree();

  endpoint.isSilent = false;
  endpoint.answer(200, worth);
  ASSERT_TRUE(reader.press("Retry"));
  EXPECT_TRUE(reader.shows("heading: Worth")) << reader.tree();
  EXPECT_TRUE(reader.shows("paragraph: The invoice goes out again.")) << reader.tree();
  EXPECT_TRUE(hides("push button: Retry"));

  ASSERT_TRUE(reader.press("Customer"));
  ASSERT_TRUE(reader.shows("list item: Choose one…")) << reader.tree();
  auto const tree = reader.tree();
  auto const second = tree.find("list item: ", tree.find("list item: Choose one…") + 1) + 11;
  auto const customer = tree.substr(second, tree.find('\n', second) - second);
  ASSERT_TRUE(reader.press(customer));
  ASSERT_TRUE(reader.shows("push button: Assign " + customer)) << reader.tree();
  ASSERT_TRUE(reader.press("Assign " + customer));
  EXPECT_TRUE(reader.reads(", " + customer + ": My invoice")) << "the cell follows\n"
                                                              << reader.tree();
  EXPECT_TRUE(hides("description: 1 transcript without a customer"));
  EXPECT_TRUE(hides("combo box: Customer"));
  EXPECT_TRUE(hides("push button: Assign " + customer));
}

TEST_F(TranscriptWindow, ClosesWhileItsTextIsFetched) {
  openWhatFailed();
  auto const asked = endpoint.count.load();
  ASSERT_TRUE(reader.press("Retry"));
  EXPECT_TRUE(eventually([&] { return endpoint.count > asked; }));
  ASSERT_TRUE(eventually([&] { return desktop.window(title) == desktop.activeWindow(); }));
  static_cast<void>(desktop.run({"xdotool", "key", "ctrl+w"}));
  EXPECT_TRUE(hides("frame: " + title)) << reader.tree();
  EXPECT_TRUE(reader.shows("push button: Hide transcripts")) << "the program goes on";
}

}  // namespace
}  // namespace vek::test
