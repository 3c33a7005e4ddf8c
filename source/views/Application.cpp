// SPDX-License-Identifier: MIT
#include "views/Application.hpp"

#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "features/Application.hpp"
#include "platform/Browser.hpp"
#include "platform/FatalError.hpp"
#include "platform/Log.hpp"
#include "platform/RedirectListener.hpp"
#include "platform/RemoteApplication.hpp"
#include "platform/WebAuthenticationSession.hpp"
#include "views/AppDelegate.hpp"
#include "views/ApplicationService.hpp"
#include "views/MainQueueDriver.hpp"
#include "views/Views.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

namespace {

/// What the desktop starts the program with when a login has ended.
std::vector<std::string> redirects(std::span<char*> arguments) {
  std::vector<std::string> found;
  std::ranges::copy_if(arguments, std::back_inserter(found), [](std::string_view argument) {
    return argument.starts_with("com.vek.app:");
  });
  return found;
}

/// Leaves what this process was started for to the one that runs already. False when none does.
bool handOver(std::vector<std::string> const& urls) {
  RemoteApplication const running(RemoteApplication::Start::never);
  if (urls.empty()) return running.activate();
  // A login in a terminal can wait for them without this program.
  return std::ranges::all_of(
      urls, [&](auto const& url) { return running.open(url) || deliverRedirect(url); });
}

/// Lets logins show their page and hear of the redirect, for as long as it lives.
class Logins {
 public:
  Logins() {
    WebAuthenticationSession::setPresenter([](auto const& page) { openInBrowser(page.url); });
    try {
      listener_ = std::make_unique<RedirectListener>("vek");
    } catch (std::exception const& error) {
      Logger("shell").error(std::string("Logins will not hear of other programs: ") + error.what());
    }
  }
  Logins(Logins const&) = delete;
  Logins& operator=(Logins const&) = delete;
  ~Logins() { WebAuthenticationSession::setPresenter(nullptr); }

 private:
  std::unique_ptr<RedirectListener> listener_;
};

ApplicationService::Requests requests(AppDelegate& delegate) {
  return {.activate = [&delegate] { delegate.activate(); },
          .open = [&delegate](QString const& url) { delegate.open(url.toStdString()); },
          .actions = {{QStringLiteral("toggle-recording"),
                       [&delegate] { delegate.toggleRecording(); }}},
          .endOfSession = terminate};
}

/// The toolkit leaves the process from within its event loop when the display is gone.
class LossOfDisplay {
 public:
  explicit LossOfDisplay(AppDelegate& delegate) { exit().delegate = &delegate; }
  LossOfDisplay(LossOfDisplay const&) = delete;
  LossOfDisplay& operator=(LossOfDisplay const&) = delete;
  ~LossOfDisplay() { exit().delegate = nullptr; }

 private:
  struct Exit {
    AppDelegate* delegate = nullptr;

    Exit() = default;
    Exit(Exit const&) = delete;
    Exit& operator=(Exit const&) = delete;
    ~Exit() {
      if (!delegate) return;
      delegate->endRecording();
      std::_Exit(0);
    }
  };

  /// What belongs to the thread goes before all that a recording may need of the process.
  static Exit& exit() {
    thread_local Exit instance;
    return instance;
  }
};

int run(AppDelegate& delegate) {
  LossOfDisplay const loss(delegate);
  delegate.applicationDidFinishLaunching();
  return QGuiApplication::exec();
}

int runApplication(int argumentCount, char** arguments, std::vector<std::string> const& urls) {
  QCoreApplication::setApplicationName(QStringLiteral("vek"));
  QGuiApplication::setApplicationDisplayName(QStringLiteral("VEK"));
  QGuiApplication::setDesktopFileName(QStringLiteral("com.vek.app"));
  // The program lives in the status area: that its windows are closed does not end it.
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QGuiApplication application(argumentCount, arguments);
  // The first text asks which fonts there are. They are looked up while all before it is made.
  std::jthread const fonts([] { static_cast<void>(QFontDatabase::hasFamily(QString())); });
  prepareViews();
  MainQueueDriver::start();
  AppDelegate delegate;
  ApplicationService service;
  // Two were started at once. Where the other one has ended since, the name is free again.
  while (service.claim(requests(delegate)) == ApplicationService::Claim::anotherProcessHasIt) {
    if (handOver(urls)) return 0;
  }
  Application::shared() = {
      .terminate = terminate,
      .orderFrontStandardAboutPanel = [&delegate] { delegate.orderFrontStandardAboutPanel(); },
      .activate = [](ActivationOptions) { activateFrontWindow(); }};
  Logins const logins;
  int const status = run(delegate);
  // Who starts the program now gets one that lasts.
  service.release();
  delegate.endRecording();
  return status;
}

}  // namespace

int applicationMain(int argumentCount, char** arguments) {
  if (!hasDesktop() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    fatalError("vek needs a desktop to show itself on; in a terminal use vekctl.");
  }
  auto const urls = redirects({arguments, static_cast<std::size_t>(argumentCount)});
  try {
    if (handOver(urls)) return 0;
    keepActivationOfThisProcess();
    return runApplication(argumentCount, arguments, urls);
  } catch (std::exception const& error) {
    fatalError(error.what());
  }
}

void terminate() {
  QCoreApplication::quit();
}

}  // namespace vek
