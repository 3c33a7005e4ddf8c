// SPDX-License-Identifier: MIT
#include <boost/json/serialize.hpp>

#include <chrono>
#include <optional>
#include <string>

#include "app/Commands.hpp"
#include "app/SessionRun.hpp"
#include "app/SignedInUser.hpp"
#include "identity/WebAuthError.hpp"
#include "platform/Browser.hpp"
#include "platform/RedirectListener.hpp"
#include "platform/WebAuthenticationSession.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {

namespace {

using Action = SessionFeature::Action;
using WebAuthCode = WebAuthError::Code;

constexpr std::chrono::milliseconds pollInterval(50);

int failed(Terminal& terminal, std::string_view reason) {
  terminal.printError(reason);
  return 1;
}

/// Tells where to sign in, and shows the page there where there is a desktop. Any thread.
void showLoginPage(std::string const& url, bool asJSON, Terminal& terminal) {
  bool const opens = hasDesktop();
  MainQueue::shared().post([=, &terminal] {
    if (asJSON) {
      terminal.printLine(boost::json::serialize(boost::json::object{{"url", url}}));
      return;
    }
    terminal.printMessage(opens ? "Sign in on the page that your browser shows, which is this one:"
                                : "Sign in on this page, in a browser on this machine or another:");
    terminal.printLine(url);
    terminal.printMessage(
        "Should the browser not find back, give the address that it ends at to "
        "`vekctl callback -`. Ctrl-C gives up.");
  });
  if (!opens) return;
  try {
    openInBrowser(url);
  } catch (std::exception const& error) {
    MainQueue::shared().post(
        [&terminal, reason = std::string(error.what())] { terminal.printMessage(reason); });
  }
}

/// Lets the login page be shown, and its redirect come in, for as long as it lives.
class LoginPages {
 public:
  LoginPages(bool asJSON, Terminal& terminal) : listener_("vekctl") {
    WebAuthenticationSession::setPresenter(
        [asJSON, &terminal](auto const& page) { showLoginPage(page.url, asJSON, terminal); });
  }
  LoginPages(LoginPages const&) = delete;
  LoginPages& operator=(LoginPages const&) = delete;
  ~LoginPages() { WebAuthenticationSession::setPresenter(nullptr); }

 private:
  RedirectListener listener_;
};

Task<> readCredentials(std::optional<Result<Credentials>>& place) {
  auto const client = DependencyValues::current()[credentialsClient];
  place.emplace(co_await attempt(client->credentials()));
}

void print(Credentials const& credentials, std::string_view before, bool asJSON,
           Terminal& terminal) {
  auto const user = SignedInUser::of(credentials);
  terminal.printLine(asJSON ? boost::json::serialize(user.object())
                            : std::string(before) + user.text());
}

}  // namespace

int logIn(bool asJSON, Terminal& terminal, Signals& signals) {
  try {
    LoginPages const pages(asJSON, terminal);
    auto const [state, isInterrupted, isStored] =
        SessionRun::of(Action::loginButtonClicked{}, signals);
    if (state.error) return failed(terminal, state.error->localizedDescription());
    if (isInterrupted) return failed(terminal, WebAuthError(WebAuthCode::userCancelled).what());
    if (!isStored) return failed(terminal, "The credentials could not be stored.");
    print(*state.credentials, "Signed in as ", asJSON, terminal);
    return 0;
  } catch (RedirectListener::NameIsTaken const&) {
    return failed(terminal, WebAuthError(WebAuthCode::transactionActiveAlready).what());
  }
}

int logOut(bool asJSON, Terminal& terminal, Signals& signals) {
  if (!SessionRun::of(Action::logout{}, signals).hasChangedKeychain) {
    return failed(terminal, "There are no credentials to remove, or the keychain refuses it.");
  }
  terminal.printLine(asJSON ? R"({"signed_out":true})" : "Signed out.");
  return 0;
}

int whoAmI(bool asJSON, Terminal& terminal, Signals& signals) {
  std::optional<Result<Credentials>> credentials;
  auto const reading = spawn(MainQueue::shared(), readCredentials(credentials));
  signals.onSignal([&](int) { reading.cancel(); });
  MainQueue::shared().runUntil([&] { return reading.isDone(); }, pollInterval);
  signals.onSignal(nullptr);
  if (!*credentials)
    return failed(terminal, ErrorObject(credentials->error()).localizedDescription());
  print(credentials->value(), "", asJSON, terminal);
  return 0;
}

}  // namespace vek
