#include "exports/utc_time.h"

#include <chrono>

namespace tav {

bool isUtcTime(std::string_view text) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isDigit = text[i] >= '0' && text[i] <= '9';
    if (kForm[i] == '0' ? !isDigit : text[i] != kForm[i]) return false;
  }
  const auto number = [&](std::size_t place) {
    return static_cast<unsigned>((text[place] - '0') * 10 + (text[place + 1] - '0'));
  };
  const std::chrono::year year(static_cast<int>(number(0) * 100 + number(2)));
  const std::chrono::year_month_day day(year, std::chrono::month(number(5)), std::chrono::day(number(8)));
  return day.ok() && number(11) < 24 && number(14) < 60 && number(17) < 60;
}

}  // namespace tav
