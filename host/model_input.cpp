#include "host/model_input.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "framework/serialization/model_reader.h"
#include "host/command.h"
#include "host/import_run.h"
#include "messages/message.h"

namespace host {
namespace {

std::string readStandardInput() {
  constexpr std::size_t kStep = std::size_t{1} << 16;
  std::string text;
  for (;;) {
    const std::size_t size = text.size();
    text.resize(size + kStep);
    const ssize_t count = read(STDIN_FILENO, text.data() + size, kStep);
    if (count < 0 && errno != EINTR)
      tav::fail(tav::Message::inputNotRead, {std::generic_category().message(errno)});
    text.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) return text;
  }
}

}  // namespace

int withModel(const std::string& input, MessageLog& log,
              const std::function<void(const tav::DetailedModel& model)>& use) {
  const auto useSaved = [&](const tav::SavedModel& saved) {
    use({*saved.model, saved.details.get()});
    return kDone;
  };
  if (input == "-") return useSaved(tav::loadSavedModelText(readStandardInput(), "standard input"));
  if (tav::isSavedModel(input)) return useSaved(tav::loadSavedModel(input));
  return runImport(input, "", log, {}, [&](const tav::DetailedModel& model) {
    use(model);
    return false;
  });
}

}  // namespace host
