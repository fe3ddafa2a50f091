#include "exports/openlineage/event_time.h"

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <system_error>

#include "framework/bridgelib/model_stamps.h"
#include "messages/message.h"

namespace tav {
namespace {

/// Whether `text` is a time in the form in which models carry it, "2026-03-08T10:00:00Z".
bool isModelTime(std::string_view text) {
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

std::int64_t modifiedAt(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0)
    fail(Message::noEventTime, {file, std::error_code(errno, std::generic_category()).message()});
  return status.st_mtim.tv_sec;
}

}  // namespace

std::string eventTime(const TAVModel& model, const std::string& input) {
  if (const auto epoch = getSourceDateEpoch()) return isoTime(*epoch);
  if (input != "-") return isoTime(modifiedAt(input));
  const auto* store = as<TAVStoreModel>(&model);
  return store && isModelTime(store->modificationTime) ? store->modificationTime.str() : isoTime(0);
}

}  // namespace tav
