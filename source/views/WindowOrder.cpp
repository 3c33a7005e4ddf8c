// SPDX-License-Identifier: MIT
#include "views/WindowOrder.hpp"

#include <QPointer>
#include <QWindow>

#include <chrono>
#include <utility>

#include "platform/ProcessEnvironment.hpp"
#include "views/StartupSequence.hpp"

namespace vek {

namespace {

constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";

QPointer<QWindow>& frontWindow() {
  static QPointer<QWindow> instance;
  return instance;
}

/// Longer no desktop waits for what was clicked, and a later click needs no help of this one.
constexpr std::chrono::seconds lifetime(15);

struct Kept {
  Activation activation;
  std::chrono::steady_clock::time_point since;
};

Kept& kept() {
  static Kept instance;
  return instance;
}

Activation takeActivation() {
  auto const [activation, since] = std::exchange(kept(), {});
  return std::chrono::steady_clock::now() - since < lifetime ? activation : Activation();
}

/// The toolkit reads the token from the environment and from nowhere else.
void requestActivate(QWindow& window, QString const& token) {
  auto const environment = heldEnvironment();
  if (!token.isEmpty()) qputenv(tokenVariable, token.toUtf8());
  window.requestActivate();
  if (!token.isEmpty()) qunsetenv(tokenVariable);
}

}  // namespace

void orderFront(QWindow& window) {
  frontWindow() = &window;
  window.showNormal();
  window.raise();
}

void activateFrontWindow() {
  if (!frontWindow()) return;
  auto const activation = takeActivation();
  StartupSequence const sequence(activation.startupID.toStdString());
  if (!sequence.activate(*frontWindow())) requestActivate(*frontWindow(), activation.token);
}

void keepActivation(Activation activation) {
  kept() = {std::move(activation), std::chrono::steady_clock::now()};
}

void keepActivationOfThisProcess() {
  keepActivation({.token = qEnvironmentVariable(tokenVariable), .startupID = {}});
  qunsetenv(tokenVariable);
}

}  // namespace vek
