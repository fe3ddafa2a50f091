#include "framework/std/date.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kHour = 3600;
constexpr std::int64_t kStandardOffset = -8 * kHour;
constexpr std::int64_t kDaylightOffset = -7 * kHour;

struct CivilDate {
  std::int64_t year;
  int month;
  int day;
};

struct Quotient {
  std::int64_t whole;
  std::int64_t rest;  // never negative
};

constexpr Quotient divide(std::int64_t a, std::int64_t b) {
  const std::int64_t rest = (a % b + b) % b;
  return {a / b - (a % b < 0 ? 1 : 0), rest};
}

// Years are counted from March, so that the leap day is a year's last: day 0 is 0000-03-01, and 400 years are
// 146,097 days.
constexpr std::int64_t kDaysBefore1970 = 719468;
constexpr std::int64_t kEraDays = 146097;

constexpr std::int64_t daysFromCivil(CivilDate date) {
  const std::int64_t marchYear = date.year - (date.month <= 2 ? 1 : 0);
  const auto [era, yearOfEra] = divide(marchYear, 400);
  const std::int64_t dayOfYear = (153 * ((date.month + 9) % 12) + 2) / 5 + date.day - 1;
  return era * kEraDays + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - kDaysBefore1970;
}

constexpr CivilDate civilFromDays(std::int64_t days) {
  const auto [era, dayOfEra] = divide(days + kDaysBefore1970, kEraDays);
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / (kEraDays - 1)) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
  const int month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
  const int day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
  return {era * 400 + yearOfEra + (month <= 2 ? 1 : 0), month, day};
}

// The first Sunday on or after a date; 1970-01-01 was a Thursday.
constexpr std::int64_t sundayFrom(CivilDate date) {
  const std::int64_t days = daysFromCivil(date);
  return days + (7 - divide(days + 4, 7).rest) % 7;
}

struct Rule {
  std::int64_t firstYear;
  int startMonth, startDay;  // daylight saving time begins on the first Sunday from here ...
  int endMonth, endDay;      // ... and ends on the first Sunday from here
};

// The last Sunday of a month of 30 or 31 days is the first one from the 24th or 25th.
constexpr std::array kRules{
    Rule{2007, 3, 8, 11, 1},   Rule{1987, 4, 1, 10, 25}, Rule{1976, 4, 24, 10, 25},
    Rule{1975, 2, 23, 10, 25}, Rule{1974, 1, 6, 10, 25}, Rule{1967, 4, 24, 10, 25},
};

// Clocks change at 2:00 of the time that holds until then.
bool isDaylightTime(std::int64_t days, std::int64_t secondOfDay) {
  const std::int64_t year = civilFromDays(days).year;
  const auto* rule =
      std::find_if(kRules.begin(), kRules.end(), [year](const Rule& r) { return year >= r.firstYear; });
  if (rule == kRules.end()) return false;
  const std::int64_t start = sundayFrom({year, rule->startMonth, rule->startDay});
  const std::int64_t end = sundayFrom({year, rule->endMonth, rule->endDay});
  const bool begun = days > start || (days == start && secondOfDay >= 2 * kHour - kStandardOffset);
  const bool ended = days > end || (days == end && secondOfDay >= 2 * kHour - kDaylightOffset);
  return begun && !ended;
}

}  // namespace

TAVString TAVDate::getPstTimestamp() const {
  auto [days, second] = divide(seconds_, kDay);
  const bool saving = isDaylightTime(days, second);
  const auto [carry, local] = divide(second + (saving ? kDaylightOffset : kStandardOffset), kDay);
  const CivilDate date = civilFromDays(days + carry);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%0*lld-%02d-%02d %02d:%02d:%02d %s", date.year < 0 ? 5 : 4,
                static_cast<long long>(date.year), date.month, date.day, static_cast<int>(local / kHour),
                static_cast<int>(local % kHour / 60), static_cast<int>(local % 60), saving ? "PDT" : "PST");
  return text.data();
}
