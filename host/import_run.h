#pragma once

// One run of the plug-in over a definition.

#include <functional>
#include <memory>
#include <string>

#include "framework/details/detailed_model.h"
#include "framework/model/owned.h"
#include "host/inputs/input.h"
#include "host/message_log.h"

namespace host {

/// What is done with the model of a run before it is saved; whether it is to be saved.
using ModelVisitor = std::function<bool(const tav::DetailedModel& model)>;

/// What of a definition is read.
struct ImportScope {
  bool details = true;  ///< what it says beyond its model
  bool empty = true;    ///< whether the model of an input without a database is shown and saved
  bool isLast = false;  ///< whether the process ends behind it, which then gives the memory back all at once
};

/// A model that lives on after the run that made it.
struct KeptModel {
  tav::Owned<TAVModel> model;
  std::unique_ptr<tav::Details> details;
};

/// Lets the plug-in read `input`, shows the model to `visit` and saves it in `output` unless that says no.
/// Returns an exit code: done; that parts of the input could not be read, each of which was logged as an
/// error; or that the input holds no database definition, which is then logged as an error. Throws when the
/// import fails.
int runImport(const Input& input, const std::string& output, MessageLog& log, const ImportScope& scope,
              const ModelVisitor& visit);

/// Reads a definition without saving anything, and keeps its model in `kept`. Returns and throws the same;
/// without a database definition there is no model.
int importModel(const Input& input, MessageLog& log, KeptModel& kept);

}  // namespace host
