#include "host/import_run.h"

#include "framework/modelbridge/host_observer.h"
#include "host/command.h"
#include "host/plugin.h"
#include "host/reports/report_details.h"
#include "messages/message.h"

namespace host {
namespace {

/// What the plug-in calls a model that got no name.
constexpr std::string_view kNameless = "Undefined";

/// Whether no database was found. One that is found may hold nothing itself, but has a name or an ID.
bool holdsNothing(const TAVStoreModel& model) {
  return model.nativeId.empty() && (model.getName().empty() || model.getName() == kNameless) &&
         model.dataPackages.empty() && model.designPackages.empty() && model.storeConnections.empty();
}

/// What the last run of a process made stays until the process ends: to take it apart, object by object,
/// would be a good part of the whole run.
void leaveToExit(KeptModel made) noexcept {
  [[maybe_unused]] static const tav::Details* volatile details = nullptr;
  [[maybe_unused]] static const TAVModel* volatile model = nullptr;
  details = made.details.release();
  model = made.model.release();
}

class Observer : public tav::HostObserver {
 public:
  Observer(const Input& input, MessageLog& log, const ImportScope& scope, const ModelVisitor& visit)
      : input_(input), step_("Reading " + input.name()), log_(log), scope_(scope), visit_(visit) {}

  void onParsed(std::uint64_t read, std::uint64_t total) override {
    if (total > 0)
      log_.showProgress(step_,
                        static_cast<int>(100.0 * static_cast<double>(read) / static_cast<double>(total)));
  }

  void onDatabase() override { defined_ = true; }

  void onMade(TAVStoreModel& model) override {
    for (TAVMetadataOrigin& origin : model.metadataOrigins)
      origin.path = input_.isInMemory() ? input_.name() : input_.path();
    model.setName(TAVString(input_.nameOfModel(model.getName().str())));
    if (tav::Details* made = details()) addReports(input_.reports(), model, *made, log_);
  }

  bool wantsDetails() override { return scope_.details; }

  bool onModel(const TAVStoreModel& model) override {
    empty = !defined_ && holdsNothing(model);
    log_.clearProgress();
    if (empty && !scope_.empty) return false;
    return visit_({model, details()});
  }

  void onDone(tav::Owned<TAVStoreModel> model) override {
    KeptModel made{std::move(model), takeDetails()};
    if (scope_.isLast)
      leaveToExit(std::move(made));
    else if (kept_ && !empty)
      *kept_ = std::move(made);
  }

  /// Lets the model and its details be kept.
  void keepIn(KeptModel* kept) { kept_ = kept; }

  bool empty = false;

 private:
  const Input& input_;
  std::string step_;
  MessageLog& log_;
  const ImportScope& scope_;
  const ModelVisitor& visit_;
  KeptModel* kept_ = nullptr;
  bool defined_ = false;
};

int run(const Input& input, const std::string& output, MessageLog& log, const ImportScope& scope,
        const ModelVisitor& visit, KeptModel* kept) {
  if (const TAVLogEvent* refusal = input.refusal()) {
    log.logEvent(*refusal);
    return kNoDefinition;
  }
  TAVImportBridgeDllInterface& plugin = loadPlugin();
  TAVOptionList options = optionsFor(input.path());
  TAVFile file{TAVString(output)};
  Observer observer(input, log, scope, visit);
  observer.keepIn(kept);
  const bool done = plugin.run(kBridgeIdentifier, file, options, log);
  log.clearProgress();
  if (!done) tav::fail(tav::Message::noModel, {input.name()});
  if (!observer.empty) return log.getErrorCount() == 0 ? kDone : kIncomplete;
  log.logEvent(tav::messageEvent(tav::Message::noDefinition, {input.name()}));
  return kNoDefinition;
}

}  // namespace

int runImport(const Input& input, const std::string& output, MessageLog& log, const ImportScope& scope,
              const ModelVisitor& visit) {
  return run(input, output, log, scope, visit, nullptr);
}

int importModel(const Input& input, MessageLog& log, KeptModel& kept) {
  const auto saveNothing = [](const tav::DetailedModel& /*model*/) { return false; };
  return run(input, "", log, {}, saveNothing, &kept);
}

}  // namespace host
