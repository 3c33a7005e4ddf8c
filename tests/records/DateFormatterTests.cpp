// SPDX-License-Identifier: MIT
#include "records/DateFormatter.hpp"

#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <random>

namespace vek {
namespace {

using namespace std::chrono;

/// The definition of the format, to hold our own reading and writing against.
class Reference {
 public:
  Reference() : format_(u"MM/dd/yy hh:mm:ss a zzz", icu::Locale("en_US_POSIX"), status_) {
    format_.adoptTimeZone(icu::TimeZone::createTimeZone("UTC"));
    format_.setLenient(false);
  }
  std::string format(Date date) {
    icu::UnicodeString text;
    format_.format(static_cast<UDate>(floor<milliseconds>(date).time_since_epoch().count()), text);
    std::string result;
    return text.toUTF8String(result);
  }
  std::optional<Date> parse(std::string const& text) {
    UErrorCode status = U_ZERO_ERROR;
    UDate const date = format_.parse(icu::UnicodeString::fromUTF8(text), status);
    if (U_FAILURE(status)) return std::nullopt;
    return Date(milliseconds(static_cast<std::int64_t>(date)));
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  icu::SimpleDateFormat format_;
};

TEST(DateFormatter, AgreesWithTheDefinitionOfTheFormat) {
  Reference reference;
  std::mt19937 random(1);
  auto const today = floor<days>(system_clock::now());
  std::uniform_int_distribution<std::int64_t> offset(-100LL * 366 * 86400, 40LL * 366 * 86400);
  for (int i = 0; i < 20000; ++i) {
    Date const date = today + seconds(offset(random));
    std::string const text = DateFormatter::format(date);
    ASSERT_EQ(text, reference.format(date));
    ASSERT_EQ(DateFormatter::parse(text), reference.parse(text)) << text;
  }
}

TEST(DateFormatter, ReadsWhatTheFormatMeans) {
  struct Case {
    char const* text;
    std::int64_t seconds;
  };
  for (auto const& [text, expected] : {
           Case{"05/15/24 03:04:05 PM UTC", 1715785445},
           Case{"05/15/24 12:04:05 AM UTC", 1715731445},
           Case{"05/15/24 12:04:05 PM UTC", 1715774645},
           Case{"02/29/24 12:00:00 AM UTC", 1709164800},
           Case{"05/15/24 03:04:05 pm UTC", 1715785445},
           Case{"05/15/24 03:04:05 PM GMT", 1715785445},
           Case{"05/15/24 03:04:05 PM EST", 1715803445},
           Case{"05/15/99 03:04:05 PM UTC", 926780645},
           Case{"05/15/2024 03:04:05 PM UTC", 1715785445},
       }) {
    EXPECT_EQ(DateFormatter::parse(text), Date(seconds(expected))) << text;
  }
}

TEST(DateFormatter, RefusesWhatIsNoDate) {
  for (char const* text :
       {"", "02/30/24 03:04:05 PM UTC", "13/15/24 03:04:05 PM UTC", "05/15/24 13:04:05 PM UTC",
        "05/15/24 03:60:05 PM UTC", "05/15/24 03:04:05 PM", "05/15/24 03:04:05 PM UTC and more",
        "2024-05-15T03:04:05Z", "0x/15/24 03:04:05 PM UTC", "-1/15/24 03:04:05 PM UTC"}) {
    EXPECT_EQ(DateFormatter::parse(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace vek
