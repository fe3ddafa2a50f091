#include "exports/openlineage/event_time.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "exports/utc_time.h"
#include "framework/bridgelib/model_stamps.h"
#include "messages/message.h"

namespace tav {
namespace {

std::int64_t modifiedAt(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0)
    fail(Message::noEventTime, {file, std::error_code(errno, std::generic_category()).message()});
  return status.st_mtim.tv_sec;
}

}  // namespace

std::string eventTime(const TAVModel& model, const ExportOptions& options) {
  if (const auto epoch = getSourceDateEpoch()) return isoTime(*epoch);
  if (!options.inputTime.empty()) return options.inputTime;
  if (options.input != "-") return isoTime(modifiedAt(options.input));
  const auto* store = as<TAVStoreModel>(&model);
  return store && isUtcTime(store->modificationTime) ? store->modificationTime.str() : isoTime(0);
}

}  // namespace tav
