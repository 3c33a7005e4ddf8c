// SPDX-License-Identifier: MIT
#include "support/ScriptedUpdates.hpp"

#include <stdexcept>

namespace vek::test {

namespace {

std::string fact(QVariantMap const& facts, char const* name) {
  return facts[QString::fromLatin1(name)].toString().toStdString();
}

QString name(UpdateChoice choice) {
  switch (choice) {
    case UpdateChoice::skip:
      return QStringLiteral("skip");
    case UpdateChoice::later:
      return QStringLiteral("later");
    case UpdateChoice::get:
      return QStringLiteral("get");
  }
  return {};
}

}  // namespace

void ScriptedUpdates::show(QVariantMap const& facts) {
  if (facts.contains(QStringLiteral("checking"))) {
    panel_.showChecking([this] { calls_.append(QStringLiteral("cancel")); });
  } else if (facts.contains(QStringLiteral("upToDate"))) {
    panel_.showUpToDate("1.0");
  } else if (facts.contains(QStringLiteral("failure"))) {
    panel_.showFailure(UpdateError(UpdateError::Code::unreachable, fact(facts, "failure")));
  } else {
    panel_.showUpdate(
        {.item = {.version = Version::parse(fact(facts, "version")).value(),
                  .displayVersionString = fact(facts, "version"),
                  .notes = fact(facts, "notes"),
                  .link = "https://vek.test"},
         .installedVersion = "1.0",
         .packageManager = fact(facts, "packageManager"),
         .didReceiveAttention = [this] { calls_.append(QStringLiteral("attention")); },
         .choose = [this](UpdateChoice choice) { calls_.append(name(choice)); }});
  }
}

Task<> ScriptedUpdates::open(std::string url) {
  if (!hasBrowser_) throw std::runtime_error("There is no browser.");
  calls_.append(QStringLiteral("open ") + QString::fromStdString(url));
  co_return;
}

}  // namespace vek::test
