#include "host/model_input.h"

#include "framework/serialization/model_reader.h"
#include "host/command.h"
#include "host/import_run.h"
#include "host/inputs/input.h"
#include "host/reports_option.h"

namespace host {
int withModel(const ModelSource& source, MessageLog& log,
              const std::function<void(const tav::DetailedModel& model)>& use) {
  Input opened = openInput(source.input, log);
  readReports(opened, source.reports);
  if (opened.isSavedModel()) {
    const tav::SavedModel saved = tav::loadSavedModel(opened.path());
    use({*saved.model, saved.details.get()});
    return kDone;
  }
  return runImport(opened, "", log, {}, [&](const tav::DetailedModel& model) {
    use(model);
    return false;
  });
}

}  // namespace host
