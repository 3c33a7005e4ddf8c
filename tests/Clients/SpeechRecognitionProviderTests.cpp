// SPDX-License-Identifier: MIT
#include "Clients/SpeechRecognitionProviderImpl.hpp"

#include "platform/Files.hpp"
#include "platform/Log.hpp"
#include "platform/UserDefaults.hpp"
#include "runtime/SyncWait.hpp"
#include "support/Environment.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using testing::ElementsAre;

struct Failure : std::runtime_error {
  Failure() : std::runtime_error("It failed.") {}
};

class SpeechRecognitionProviderTests : public testing::Test {
 protected:
  /// A client of which each operation writes down that it was called.
  template <class Client>
  Client client(std::string const& name) {
    Client result;
    result.hasPermission = [this, name] { return permission(name + ".has", true); };
    result.requestPermission = [this, name] { return permission(name + ".request", false); };
    result.startRecording = [this, name] { return start(name + ".start"); };
    result.stopRecording = [this, name] { return stop(name + ".stop"); };
    return result;
  }

  Task<bool> permission(std::string call, bool answer) {
    calls_.push_back(std::move(call));
    co_return answer;
  }
  Task<Stream<RecordingTranscript>> start(std::string call) {
    calls_.push_back(std::move(call));
    if (fails_) throw Failure();
    auto [stream, continuation] = Stream<RecordingTranscript>::makeStream();
    continuation.yield({.text = "said"});
    co_return std::move(stream);
  }
  Task<> stop(std::string call) {
    calls_.push_back(std::move(call));
    if (fails_) throw Failure();
    co_return;
  }

  RecognitionProvider setting_ = RecognitionProvider::apple;
  bool fails_ = false;
  std::vector<std::string> calls_;
  SpeechRecognitionProvider provider_ = withDependencies(
      [this](DependencyValues& values) {
        values.set(localSpeechRecognitionClient, client<LocalSpeechRecognitionClient>("local"));
        values.set(remoteSpeechRecognitionClient, client<RemoteSpeechRecognitionClient>("remote"));
      },
      [this] {
        return SpeechRecognitionProviderImpl::client(
            std::make_shared<SpeechRecognitionProviderImpl>([this] { return setting_; }));
      });
};

TEST_F(SpeechRecognitionProviderTests, PermissionsFollowTheSettingOfTheMoment) {
  EXPECT_TRUE(syncWait(provider_.hasPermission()));
  setting_ = RecognitionProvider::deepgram;
  EXPECT_FALSE(syncWait(provider_.requestPermission()));
  syncWait(provider_.stopRecording());
  EXPECT_THAT(calls_, ElementsAre("local.has", "remote.request")) << "nothing recorded";
}

TEST_F(SpeechRecognitionProviderTests, StopReachesWhatWasStarted) {
  auto const stream = syncWait(provider_.startRecording());
  EXPECT_EQ(syncWait(stream.next())->text, "said");
  setting_ = RecognitionProvider::deepgram;
  syncWait(provider_.stopRecording());
  syncWait(provider_.stopRecording());
  (void)syncWait(provider_.startRecording());
  EXPECT_THAT(calls_, ElementsAre("local.start", "local.stop", "remote.start"));
}

TEST_F(SpeechRecognitionProviderTests, FailuresLeaveTheCurrentClientInPlace) {
  fails_ = true;
  EXPECT_THROW((void)syncWait(provider_.startRecording()), Failure);
  EXPECT_THROW(syncWait(provider_.stopRecording()), Failure);
  fails_ = false;
  syncWait(provider_.stopRecording());
  syncWait(provider_.stopRecording());
  EXPECT_THAT(calls_, ElementsAre("local.start", "local.stop", "local.stop"));
}

TEST(RecognitionProvider, SettingIsStoredWithItsQuotes) {
  // The standard store takes its place at the first use in the process.
  test::TemporaryFolder const folder;
  test::EnvironmentVariable const home("XDG_CONFIG_HOME", folder.path());
  auto const file = folder / "vek/settings.json";
  EXPECT_EQ(recognitionProviderSetting(), RecognitionProvider::apple);
  EXPECT_EQ(UserDefaults::standard().string("recognitionProvider"), "\"apple\"");

  setRecognitionProviderSetting(RecognitionProvider::deepgram);
  EXPECT_EQ(recognitionProviderSetting(), RecognitionProvider::deepgram);
  EXPECT_EQ(readFile(file), "{\"recognitionProvider\":\"\\\"deepgram\\\"\"}\n");

  LogRedirection const silent([](LogLevel, std::string_view, std::string_view) {}, LogLevel::error);
  for (char const* text : {"deepgram", R"("other")", "7", ""}) {
    UserDefaults::standard().set("recognitionProvider", text);
    EXPECT_EQ(recognitionProviderSetting(), RecognitionProvider::apple) << text;
  }
}

}  // namespace
}  // namespace vek
