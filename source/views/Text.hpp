// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <chrono>
#include <optional>

#include "runtime/Date.hpp"
#include "runtime/ErrorObject.hpp"

namespace vek {

/// What a view shows of an error; nothing without one.
inline QString text(std::optional<ErrorObject> const& error) {
  return error ? QString::fromStdString(error->localizedDescription()) : QString();
}

/// A date in the numeric form of the user's language, and the time without its seconds.
inline QString text(Date moment) {
  using std::chrono::milliseconds;
  auto const since = std::chrono::duration_cast<milliseconds>(moment.time_since_epoch());
  // The C locale's short form names the month and has seconds.
  auto const locale = QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale();
  return locale.toString(QDateTime::fromMSecsSinceEpoch(since.count()), QLocale::ShortFormat);
}

/// A date as a part of a file's name, which sorts by it.
inline QString fileNameOf(Date moment) {
  using std::chrono::milliseconds;
  auto const since = std::chrono::duration_cast<milliseconds>(moment.time_since_epoch());
  return QDateTime::fromMSecsSinceEpoch(since.count()).toString(QStringLiteral("yyyy-MM-dd HH.mm"));
}

}  // namespace vek
