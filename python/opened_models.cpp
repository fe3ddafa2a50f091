#include "python/opened_models.h"

#include <algorithm>
#include <numeric>
#include <sstream>
#include <utility>

#include "exports/answers/coverage_report.h"
#include "exports/answers/diff_report.h"
#include "exports/answers/unused_report.h"
#include "exports/json.h"
#include "framework/std/exception.h"
#include "framework/std/mask.h"
#include "host/command.h"
#include "host/map_option.h"
#include "lineage/joined_search.h"

namespace python {
namespace {

/// A log whose messages are kept, but for the steps of an import.
class KeptLog {
 public:
  KeptLog() {
    log_.receiver = [this](const std::string& file, const TAVLogEvent& event) {
      if (event.getSeverity() == tav::kSeverityStatus) return;
      messages_.push_back({file, std::string(tav::severityName(event.getSeverity())),
                           event.getMessageId().str(), event.getText().str()});
    };
  }
  KeptLog(const KeptLog&) = delete;
  KeptLog& operator=(const KeptLog&) = delete;
  ~KeptLog() = default;

  host::MessageLog& log() noexcept { return log_; }
  [[nodiscard]] const std::vector<Message>& messages() const noexcept { return messages_; }

  /// The gravest of the messages, of those the last, as what work on `file` ended with.
  [[nodiscard]] Fault fault(const std::string& file) const {
    const Message* gravest = nullptr;
    for (const Message& message : messages_)
      if (message.level == "FATAL" || message.level == "ERROR") gravest = &message;
    Message message = gravest ? *gravest : Message{};
    if (message.file.empty()) message.file = tav::maskPasswords(file);
    return Fault(std::move(message));
  }

 private:
  std::vector<Message> messages_;
  host::MessageLog log_;
};

/// Does what may fail. What the program tells its users of a failure becomes a Fault about `file`.
template <class F> auto faulting(const std::string& file, KeptLog& kept, F work) {
  try {
    return work();
  } catch (const TAVException& error) {
    kept.log().logFailure(error.getMessage());
  } catch (const host::UsageError& error) {
    kept.log().logFailure(error.what());
  }
  throw kept.fault(file);
}

template <class F> std::string textOf(F write) {
  std::ostringstream out;
  write(out);
  return std::move(out).str();
}

std::vector<tav::UnusedGroup> groupsOf(const std::vector<std::string>& names) {
  std::vector<tav::UnusedGroup> groups;
  for (const tav::UnusedGroup& group : tav::unusedGroups())
    if (names.empty() || std::find(names.begin(), names.end(), group.name) != names.end())
      groups.push_back(group);
  return groups;
}

std::unique_ptr<const tav::JoinedModels> join(const host::KeptModels& kept,
                                              const std::vector<std::size_t>& places, bool named) {
  if (!named) return std::make_unique<const tav::JoinedModels>(kept.graph(places.front()));
  return std::make_unique<const tav::JoinedModels>(kept.named());
}

}  // namespace

Fault::Fault(Message message) : std::runtime_error(message.text), message_(std::move(message)) {}

OpenedModels::Opened OpenedModels::open(const std::vector<std::string>& inputs, const std::string& map,
                                        bool several, const std::function<void()>& beforeEach) {
  KeptLog kept;
  const std::string& first = inputs.front();
  auto found =
      faulting(first, kept, [&] { return host::findInputs(inputs, host::readMap(map), kept.log()); });
  if (!several && found.paths.size() > 1)
    throw Fault({tav::maskPasswords(first), "FATAL", "", "It holds several models; open_all() opens them."});
  auto models = std::make_shared<host::KeptModels>();
  int code = host::kDone;
  for (const std::string& path : found.paths) {
    beforeEach();
    const auto add = [&] { return models->add(path, found.maps.of(path), kept.log()); };
    code = host::worseOf(code, several ? host::guarded(path, kept.log(), add) : faulting(path, kept, add));
  }
  if (models->size() == 0) throw kept.fault(first);
  std::vector<std::size_t> places(models->size());
  std::iota(places.begin(), places.end(), 0);
  return {std::make_shared<OpenedModels>(std::move(models), std::move(places), several), kept.messages(),
          code == host::kDone};
}

OpenedModels::OpenedModels(std::shared_ptr<const host::KeptModels> kept, std::vector<std::size_t> places,
                           bool named)
    : kept_(std::move(kept)), places_(std::move(places)), joined_(join(*kept_, places_, named)) {}

std::shared_ptr<OpenedModels> OpenedModels::only(std::size_t place) const {
  return std::make_shared<OpenedModels>(kept_, std::vector<std::size_t>{places_.at(place)}, false);
}

std::vector<std::string> OpenedModels::names() const {
  if (!joined().namesModels()) return {kept_->graph(places_.front()).modelName()};
  std::vector<std::string> names;
  for (const auto& model : joined().models()) names.push_back(model.name);
  return names;
}

std::vector<std::string> OpenedModels::inputs() const {
  std::vector<std::string> inputs;
  inputs.reserve(places_.size());
  for (const std::size_t place : places_) inputs.push_back(kept_->input(place));
  return inputs;
}

Answer OpenedModels::lineage(const std::string& name, const tav::LineageWalk& walk) const {
  KeptLog kept;
  const auto found = faulting("", kept, [&] { return tav::findStarts(joined(), name, walk.direction); });
  return tell({found.nodes, walk});
}

Answer OpenedModels::lineageOf(tav::JoinedId id, const tav::LineageWalk& walk) const {
  if (id >= joined().size()) throw Fault({"", "FATAL", "", "No object has this number."});
  return tell({{id}, walk});
}

Answer OpenedModels::tell(const tav::LineageQuestion& question) const {
  return {textOf([&](std::ostream& out) { tav::writeLineageJson(joined(), question, out); }),
          textOf([&](std::ostream& out) { tav::writeLineageText(joined(), question, out); })};
}

std::string OpenedModels::graph() const {
  return textOf([&](std::ostream& out) { tav::writeGraphJson(joined(), out); });
}

Answer OpenedModels::unused(const std::vector<std::string>& names) const {
  const std::vector<tav::UnusedGroup> groups = groupsOf(names);
  return {textOf([&](std::ostream& out) { tav::writeUnusedJson(joined(), groups, out); }),
          textOf([&](std::ostream& out) { tav::writeUnusedText(joined(), groups, out); })};
}

Answer OpenedModels::coverage() const {
  const tav::LineageGraph& graph = joined().whole(0);
  const tav::Coverage coverage = tav::measureCoverage(graph);
  return {textOf([&](std::ostream& out) { tav::writeCoverageJson(graph, coverage, out); }),
          textOf([&](std::ostream& out) { tav::writeCoverageText(graph, coverage, out); })};
}

std::string OpenedModels::document() const {
  return textOf([&](std::ostream& out) { tav::exportJson(kept_->model(places_.front()), out); });
}

Answer OpenedModels::diff(const OpenedModels& after, const std::string& map) const {
  KeptLog kept;
  auto maps = faulting(map, kept, [&] { return host::InputMaps(host::readMap(map)); });
  const tav::ModelDiff diff = tav::compareModels(
      kept_->model(places_.front()), after.kept_->model(after.places_.front()),
      maps.ofBoth(kept_->input(places_.front()), after.kept_->input(after.places_.front())));
  return {textOf([&](std::ostream& out) { tav::writeDiffJson(diff, out); }),
          textOf([&](std::ostream& out) { tav::writeDiffText(diff, out); })};
}

std::string version() {
  return XMLA_VERSION;
}

}  // namespace python
