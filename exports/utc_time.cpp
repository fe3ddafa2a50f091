#include "exports/utc_time.h"

#include <chrono>

namespace tav {
namespace {

unsigned twoDigits(std::string_view text, std::size_t place) {
  return static_cast<unsigned>((text[place] - '0') * 10 + (text[place + 1] - '0'));
}

std::chrono::year_month_day dayOf(std::string_view text) {
  const std::chrono::year year(static_cast<int>(twoDigits(text, 0) * 100 + twoDigits(text, 2)));
  return {year, std::chrono::month(twoDigits(text, 5)), std::chrono::day(twoDigits(text, 8))};
}

}  // namespace

bool isUtcTime(std::string_view text) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isDigit = text[i] >= '0' && text[i] <= '9';
    if (kForm[i] == '0' ? !isDigit : text[i] != kForm[i]) return false;
  }
  return dayOf(text).ok() && twoDigits(text, 11) < 24 && twoDigits(text, 14) < 60 && twoDigits(text, 17) < 60;
}

std::int64_t utcSeconds(std::string_view time) {
  const auto day = std::chrono::sys_days(dayOf(time));
  const auto clock = std::chrono::hours(twoDigits(time, 11)) + std::chrono::minutes(twoDigits(time, 14)) +
                     std::chrono::seconds(twoDigits(time, 17));
  return std::chrono::duration_cast<std::chrono::seconds>(day.time_since_epoch() + clock).count();
}

}  // namespace tav
