#include "framework/bridgelib/model_stamps.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "framework/std/exception.h"

namespace {

constexpr std::int64_t kLastSecond = 253402300799;  // of the year 9999: a later time has no four-digit year

std::int64_t secondsOf(std::string_view epoch) {
  std::int64_t seconds = -1;
  const auto [end, error] = std::from_chars(epoch.data(), epoch.data() + epoch.size(), seconds);
  if (error != std::errc() || end != epoch.data() + epoch.size() || seconds < 0 || seconds > kLastSecond)
    tav::fail("TAVBRIDGE_F0011", "SOURCE_DATE_EPOCH is '" + std::string(epoch) +
                                     "', but must be a number of seconds since 1970, up to the year 9999.");
  return seconds;
}

}  // namespace

namespace tav {

std::optional<std::int64_t> getSourceDateEpoch() {
  const char* epoch =
      std::getenv("SOURCE_DATE_EPOCH");  // NOLINT(concurrency-mt-unsafe): nothing here sets it
  return epoch && *epoch != '\0' ? std::optional(secondsOf(epoch)) : std::nullopt;
}

std::string isoTime(std::int64_t seconds) {
  const std::chrono::sys_seconds time{std::chrono::seconds(seconds)};
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text.data();
}

}  // namespace tav

tav::Owned<TAVMetadataOrigin> generateMetadataOrigin(const tav::OriginTool& tool, const TAVString& name,
                                                     const TAVString& version) {
  auto origin = tav::make<TAVMetadataOrigin>(name);
  origin->toolName = tool.toolName;
  origin->vendorName = tool.vendorName;
  origin->version = version;
  return origin;
}

void setModelModificationTime(TAVStoreModel& model, const TAVOptionList& /*options*/) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto epoch = tav::getSourceDateEpoch();
  model.modificationTime =
      tav::isoTime(epoch ? *epoch : std::chrono::duration_cast<std::chrono::seconds>(now).count());
}
