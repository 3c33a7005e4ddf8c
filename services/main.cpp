// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <pthread.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "platform/Bundle.hpp"
#include "platform/CoreDumps.hpp"
#include "platform/Deployment.hpp"
#include "platform/Log.hpp"
#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "services/backend/Backend.hpp"
#include "services/backend/SampleData.hpp"
#include "services/identity/FirstAccount.hpp"
#include "services/identity/IdentityProvider.hpp"
#include "services/recogniser/Listen.hpp"
#include "services/support/CertificateAuthority.hpp"
#include "services/support/DataFolder.hpp"
#include "services/support/HTTPServer.hpp"
#include "services/support/Options.hpp"
#include "services/updates/UpdatePublisher.hpp"

namespace vek::services {

namespace {

void writeLog(LogLevel level, std::string_view, std::string_view message) {
  fmt::print(stderr, "vek-services: {}{}\n", level == LogLevel::error ? "error: " : "", message);
}

/// Memory holds tokens and texts, so it must not end in a core file; files are for their owner
/// alone; a write that is refused is an error and not the end.
void hardenProcess() {
  disableCoreDumps();
  umask(077);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

/// The signals that end the program. Threads that start afterwards leave them to the main one.
sigset_t blockEndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (int const signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

std::string environmentValue(char const* name) {
  char const* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

UserID firstUser(BackendStore& store) {
  if (auto const user = store.firstUser()) return *user;
  SampleData const sample(std::chrono::system_clock::now());
  return store.addUser("local user", sample.customers, sample.briefs);
}

IdentityConfiguration identityConfiguration(Options const& options, std::uint16_t port) {
  auto configuration = IdentityConfiguration::onPort(port, deployment().audience);
  configuration.accessTokenLifetime = options.accessTokenLifetime;
  configuration.keyLifetime = options.keyLifetime;
  return configuration;
}

void print(FirstAccount const& account) {
  fmt::print("The first account is {}, with this password, which is shown once: {}\n", account.name,
             account.password);
  std::fflush(stdout);
}

void run(Options const& options) {
  hardenProcess();
  auto const endingSignals = blockEndingSignals();
  Logger const logger("services");
  DataFolder const folder(options.data);
  CertificateAuthority const authority(folder.path());
  BackendStore store(folder / "backend.sqlite");
  auto const user = firstUser(store);

  HTTPServer server({.port = options.port,
                     .certificate = authority.serverCertificate(),
                     .key = authority.serverKey()});
  auto const configuration = identityConfiguration(options, server.port());
  IdentityStore identityStore(folder / "identity.sqlite", configuration.idleLifetime);
  auto const account = FirstAccount::make(identityStore, user, folder / "first-account");
  if (account) print(*account);
  configuration.writePropertyList(folder / "Auth0.plist");
  IdentityProvider identity(configuration, identityStore);
  Backend backend(store, [&identity](std::string_view token) { return identity.user(token); },
                  {.url = options.chatCompletions,
                   .model = options.chatModel,
                   .key = environmentValue("VEK_CHAT_KEY")});
  UpdatePublisher const updates(
      folder, options.updateVersion.empty() ? Bundle::main().version : options.updateVersion,
      fmt::format("https://localhost:{}", server.port()));
  Listen listen(installedSpeechParts(deployment().modelsFolder), deployment().recogniserKey);
  server.serve([&](Request request, Reply reply) {
    if (request.path == Listen::path) return listen.handle(request, reply);
    if (UpdatePublisher::serves(request.path)) return reply(updates.answer(request));
    if (IdentityProvider::serves(request.path)) {
      return identity.handle(std::move(request), std::move(reply));
    }
    backend.handle(std::move(request), std::move(reply));
  });
  logger.notice(fmt::format("started with the data in {}", folder.path().string()));
  fmt::print("Listening on https://localhost:{}\n", server.port());
  std::fflush(stdout);

  int signal = 0;
  sigwait(&endingSignals, &signal);
  backend.stop();
  server.stop();
  logger.notice("stopped");
}

}  // namespace

}  // namespace vek::services

int main(int count, char** arguments) {
  using namespace vek::services;
  vek::LogRedirection const log(writeLog, vek::LogLevel::notice);
  try {
    auto const options =
        Options::parse(std::span<char const* const>(arguments, arguments + count).subspan(1));
    if (options.asksForHelp) {
      fmt::print("{}", Options::help());
      return 0;
    }
    run(options);
    return 0;
  } catch (UsageError const& error) {
    fmt::print(stderr, "vek-services: {}\nTry 'vek-services --help'.\n", error.what());
    return 2;
  } catch (std::exception const& error) {
    fmt::print(stderr, "vek-services: error: {}\n", error.what());
    return 1;
  }
}
