// SPDX-License-Identifier: MIT
#include "records/DateFormatter.hpp"

#include <cstdint>
#include <memory>
#include <mutex>

#include <fmt/format.h>
#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace vek {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

// What the format means is what ICU makes of it. ICU takes a tenth of a second to load and 15 µs
// for a date; so the text that the backend writes is read by hand, at a hundredth of that, and all
// other texts are left to ICU.
std::optional<Date> parseWithICU(std::string_view text) {
  static std::mutex mutex;
  std::lock_guard const lock(mutex);  // a SimpleDateFormat is not for two threads at once
  static auto const format = [] {
    UErrorCode status = U_ZERO_ERROR;
    auto result = std::make_unique<icu::SimpleDateFormat>(u"MM/dd/yy hh:mm:ss a zzz",
                                                          icu::Locale("en_US_POSIX"), status);
    if (U_FAILURE(status)) return std::unique_ptr<icu::SimpleDateFormat>();
    result->adoptTimeZone(icu::TimeZone::createTimeZone("UTC"));
    result->setLenient(false);
    return result;
  }();
  if (!format) return std::nullopt;

  auto const unicode = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  icu::ParsePosition position(0);
  UDate const date = format->parse(unicode, position);
  if (position.getErrorIndex() >= 0 || position.getIndex() != unicode.length()) return std::nullopt;
  return Date(milliseconds(static_cast<std::int64_t>(date)));
}

/// Two digits, or -1.
int number(std::string_view text, std::size_t at) {
  auto const digit = [&](std::size_t i) {
    return text[i] >= '0' && text[i] <= '9' ? text[i] - '0' : -100;
  };
  int const value = digit(at) * 10 + digit(at + 1);
  return value < 0 ? -1 : value;
}

/// The full year, or nothing near the ends of ICU's window, which hang on the minute of its start.
std::optional<int> fullYear(int twoDigits) {
  auto const today = floor<days>(std::chrono::system_clock::now());
  int const now = static_cast<int>(std::chrono::year_month_day(today).year());
  int year = now - now % 100 + twoDigits;
  if (year > now + 20) year -= 100;
  if (year < now - 80) year += 100;
  if (year > now + 18 || year < now - 78) return std::nullopt;
  return year;
}

/// The exact form "05/15/24 03:04:05 PM UTC".
std::optional<Date> parseCanonical(std::string_view text) {
  constexpr std::string_view shape = "00/00/00 00:00:00 ?M UTC";
  if (text.size() != shape.size()) return std::nullopt;
  for (std::size_t i = 0; i < shape.size(); ++i) {
    if (shape[i] != '0' && shape[i] != '?' && shape[i] != text[i]) return std::nullopt;
  }
  if (text[18] != 'A' && text[18] != 'P') return std::nullopt;

  int const month = number(text, 0), day = number(text, 3), yearInCentury = number(text, 6);
  int const hour = number(text, 9), minute = number(text, 12), second = number(text, 15);
  if (month < 0 || day < 0 || yearInCentury < 0 || hour < 1 || hour > 12 || minute < 0 ||
      minute > 59 || second < 0 || second > 59) {
    return std::nullopt;
  }
  auto const year = fullYear(yearInCentury);
  if (!year) return std::nullopt;
  std::chrono::year_month_day const date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  int const hourOfDay = hour % 12 + (text[18] == 'P' ? 12 : 0);
  return std::chrono::sys_days(date) + hours(hourOfDay) + minutes(minute) + seconds(second);
}

}  // namespace

std::optional<Date> DateFormatter::parse(std::string_view text) {
  if (auto const date = parseCanonical(text)) return date;
  return parseWithICU(text);
}

std::string DateFormatter::format(Date date) {
  auto const day = floor<days>(date);
  std::chrono::year_month_day const calendar(day);
  std::chrono::hh_mm_ss const time(floor<seconds>(date) - day);
  auto const hour = time.hours().count();
  int const year = static_cast<int>(calendar.year());
  return fmt::format("{:02}/{:02}/{:02} {:02}:{:02}:{:02} {} UTC",
                     static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                     year % 100, hour % 12 == 0 ? 12 : hour % 12, time.minutes().count(),
                     time.seconds().count(), hour < 12 ? "AM" : "PM");
}

}  // namespace vek
