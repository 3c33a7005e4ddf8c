// SPDX-License-Identifier: MIT
// The hosted recogniser over real connections.
#include "services/recogniser/Listen.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>

#include "records/DeepgramMetadataDTO.hpp"
#include "services/ListenClient.hpp"
#include "services/support/CertificateAuthority.hpp"
#include "services/support/HTTPServer.hpp"
#include "support/BackendClient.hpp"
#include "support/Environment.hpp"
#include "support/ScriptedSpeechModels.hpp"
#include "support/SpeechSamples.hpp"
#include "support/WordErrors.hpp"

namespace vek::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

std::vector<std::string> const upgrade = {"Connection: Upgrade", "Upgrade: websocket",
                                          "Sec-WebSocket-Version: 13",
                                          "Sec-WebSocket-Key: MTIzNDU2Nzg5MDEyMzQ1Ng=="};

SpeechSample sample(std::string const& name) {
  auto const samples = speechSamples(VEK_SAMPLE_SPEECH);
  return *std::ranges::find(samples, name + ".wav", &SpeechSample::name);
}

/// What a plain HTTP client is answered that asks for a stream.
Answer asked(LocalServices const& services, std::string const& query,
             std::vector<std::string> headers = upgrade, std::string const& method = "GET",
             std::string const& key = deployment().recogniserKey) {
  BackendClient client(services.url(), services.authority(), "");
  headers.push_back("Authorization: " + key);
  if (key.find(' ') == std::string::npos) headers.back() = "Authorization: Token " + key;
  return client.request(method, "/v1/listen?" + query, "", headers);
}

TEST(Listen, ARequestThatIsNotGoodIsToldWhy) {
  LocalServices const services;
  std::string const query = ListenClient::standardQuery;
  for (auto const& key :
       {std::string("wrong"), "Bearer " + deployment().recogniserKey, std::string(" ")}) {
    auto const answer = asked(services, "bad=item", upgrade, "GET", key);
    EXPECT_EQ(answer.status, 401);
    EXPECT_THAT(answer.message(), HasSubstr("does not name the key"));
  }
  EXPECT_EQ(asked(services, query, {}).status, 426);
  EXPECT_EQ(asked(services, query, upgrade, "POST").status, 405);

  struct Case {
    std::string item;
    std::string message;
  };
  for (auto const& [item, message] : std::vector<Case>{
           {"model=other", R"("model" is "other", but it must be "nova-2-meeting".)"},
           {"model=", R"("model" is "")"},
           {"encoding=opus", R"("encoding" is "opus")"},
           {"sample_rate=7999", R"("sample_rate" is "7999", but it must be a number from 8000 to)"},
           {"sample_rate=192001", R"("sample_rate" is "192001")"},
           {"sample_rate=16000.5", R"("sample_rate" is "16000.5")"},
           {"sample_rate=99999999999999999999", R"("sample_rate" is)"},
           {"channels=0", R"("channels" is "0")"},
           {"channels=9", R"("channels" is "9")"},
           {"channels=-1", R"("channels" is "-1")"},
           {"interim_results=1", R"("interim_results" is "1", but it must be "true" or "false".)"},
           {"diarize=True", R"("diarize" is "True")"},
           {"endpointing=300", R"("endpointing" is "300")"},
           {"tier=base", R"("tier" is unknown here.)"}}) {
    auto const name = item.substr(0, item.find('='));
    auto changed = query;
    if (auto const at = changed.find(name + '='); at != std::string::npos) {
      changed.replace(at, changed.find('&', at) - at, item);
    } else {
      changed += '&' + item;
    }
    auto const answer = asked(services, changed);
    EXPECT_EQ(answer.status, 400) << item;
    EXPECT_THAT(answer.message(), HasSubstr(message));
  }
  EXPECT_THAT(asked(services, "").message(), HasSubstr(" is missing."));
  EXPECT_THAT(asked(services, query + "&channels=1").message(), "\"channels\" is given twice.");
  EXPECT_THAT(services.log(), Not(HasSubstr(deployment().recogniserKey)));
}

TEST(Listen, WithoutModelsItSaysHowToGetThem) {
  TemporaryFolder const folder;
  std::ofstream(folder / "deployment.json")
      << R"({"modelsFolder":")" + folder.path().string() + "\"}";
  EnvironmentVariable const variable("VEK_DEPLOYMENT_FILE", folder / "deployment.json");
  LocalServices const services;
  auto const answer = asked(services, ListenClient::standardQuery);
  EXPECT_EQ(answer.status, 503);
  EXPECT_THAT(answer.message(), HasSubstr("Run scripts/install-dependencies"));
}

TEST(Listen, TwoStreamsAtOnceAreRecognisedEachForItself) {
  LocalServices const services;
  std::atomic<int> interims = 0;
  std::vector<std::jthread> speakers;
  for (auto const* name : {"hts-slt-s02", "hts-slt-s06"}) {
    speakers.emplace_back([&services, &interims, spoken = sample(name)] {
      ListenClient const client(services.webSocketURL(), services.authority());
      // Not before the models are loaded, or all would be settled at once.
      client.text(R"({ "type": "Finalize" })");
      EXPECT_TRUE(client.waitFor(R"("from_finalize":true)"));
      client.speak(spoken.samples);
      client.text(R"({ "type": "CloseStream" })");
      EXPECT_THAT(client.end(), HasSubstr("closed with 1000"));
      EXPECT_LE(wrongWords(spoken.transcript, client.finalText()), 2U) << client.finalText();
      if (client.waitFor(R"("is_final":false)")) ++interims;
      auto const closing = json::decode<Deepgram::MetadataDTO>(client.messages().back());
      EXPECT_DOUBLE_EQ(closing.duration, static_cast<double>(spoken.samples.size()) / 16000);
    });
  }
  speakers.clear();
  EXPECT_GT(interims, 0);
}

TEST(Listen, AStopOfTheServicesClosesItsStreams) {
  LocalServices services;
  ListenClient const client(services.webSocketURL(), services.authority());
  client.audio(std::string(64000, '\0'));
  client.text(R"({ "type": "Finalize" })");
  EXPECT_TRUE(client.waitFor(R"("from_finalize":true)"));
  EXPECT_EQ(services.stop(), 0);
  EXPECT_THAT(client.end(), HasSubstr("closed with 1001"));
}

/// The recogniser in this process, over models that know nothing.
class ListenServer {
 public:
  explicit ListenServer(std::chrono::milliseconds messageTimeout = 1min)
      : server_({.certificate = authority_.serverCertificate(),
                 .key = authority_.serverKey(),
                 .messageTimeout = messageTimeout}) {
    server_.serve([this](services::Request const& request, services::Reply const& reply) {
      listen_.handle(request, reply);
    });
  }

  [[nodiscard]] std::unique_ptr<ListenClient> connect() const {
    return std::make_unique<ListenClient>("wss://localhost:" + std::to_string(server_.port()),
                                          folder_ / "authority.pem");
  }

 private:
  TemporaryFolder folder_;
  services::CertificateAuthority authority_{folder_.path()};
  services::Listen listen_{
      {.engine = std::make_shared<SpeechEngine>(
           [] { return std::make_unique<ScriptedSpeechModels>(); }, 1min),
       .problem = [] { return std::nullopt; },
       .authorizationStatus = [] { return SpeechRecognizerAuthorizationStatus::authorized; }},
      deployment().recogniserKey};
  services::HTTPServer server_;
};

TEST(Listen, AClientThatHasGoneQuietIsClosed) {
  ListenServer const server(300ms);
  auto const client = server.connect();
  for (int i = 0; i < 6; ++i) {
    client->text(R"({"type":"KeepAlive"})");
    std::this_thread::sleep_for(100ms);
  }
  client->text(R"({ "type": "Finalize" })");
  EXPECT_TRUE(client->waitFor("Results"));
  EXPECT_THAT(client->end(), HasSubstr("closed with 1011 \"No message came for too long.\""));
}

TEST(Listen, ThereAreNoMoreStreamsThanItCanServeUntilOneEnds) {
  ListenServer const server;
  std::vector<std::unique_ptr<ListenClient>> clients;
  for (std::size_t i = 0; i < services::Listen::streamLimit; ++i) {
    clients.push_back(server.connect());
    clients.back()->text(R"({ "type": "Finalize" })");
    EXPECT_TRUE(clients.back()->waitFor("Results"));
  }
  EXPECT_THAT(server.connect()->end(), HasSubstr("503"));
  clients.pop_back();
  for (int i = 0; i < 40; ++i) {
    auto const next = server.connect();
    next->text(R"({"type":"CloseStream"})");
    if (next->end().find("closed with 1000") != std::string::npos) return;
  }
  ADD_FAILURE() << "No place has become free.";
}

TEST(Listen, AMessageThatIsTooLongIsRefused) {
  ListenServer const server;
  auto const client = server.connect();
  client->audio(std::string((1 << 20) + 1, '\0'));
  EXPECT_THAT(client->end(), HasSubstr("The connection to the server was lost"));
}

}  // namespace
}  // namespace vek::test
