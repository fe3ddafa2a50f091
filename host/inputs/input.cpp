#include "host/inputs/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "framework/serialization/model_reader.h"
#include "framework/std/file.h"
#include "host/heap.h"
#include "host/inputs/container.h"
#include "host/inputs/content.h"
#include "host/inputs/estate_model.h"
#include "host/inputs/extension.h"
#include "host/inputs/folder.h"
#include "host/inputs/listing.h"
#include "host/inputs/project_document.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr const char* kStandardInput = "standard input";

[[noreturn]] void failToRead(const std::string& name) {
  tav::fail(tav::Message::inputNotRead, {name, std::generic_category().message(errno)});
}

/// Whether it can be read only once, from its start to its end.
bool isStream(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return false;
  return S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) || S_ISCHR(status.st_mode);
}

Input readStream(const std::string& name, int descriptor) {
  MemoryFile file(name);
  file.copyFrom(descriptor);
  return {name, std::move(file)};
}

/// An open pipe.
class Pipe {
 public:
  explicit Pipe(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) failToRead(path);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() { close(descriptor_); }

  [[nodiscard]] int get() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

Input readPipe(const std::string& path) {
  const Pipe pipe(path);
  return readStream(path, pipe.get());
}

Input refuse(const std::string& path, const std::string& cause) {
  return Input::refused(path, tav::messageEvent(tav::Message::foreignInput, {path, cause}));
}

/// Of what holds several definitions, for a command that takes one.
[[noreturn]] void failSeveral(const std::string& path, const std::vector<std::string>& found) {
  tav::fail(tav::Message::severalDefinitions, {path, shortList(found)});
}

Input openEstateModel(const std::string& argument, const EstatePlace& place) {
  const std::vector<tav::EstateModel> models = modelsIn(place);
  if (models.size() == 1) return {argument, documentIn(place, models.front())};
  if (models.empty()) return refuse(argument, "an estate without models");
  std::vector<std::string> names;
  names.reserve(models.size());
  for (const tav::EstateModel& model : models) names.push_back(estateArgument(place.path, model));
  failSeveral(argument, names);
}

Input openProject(const std::string& path, MessageLog& log) {
  const Project project = readProject(path, log);
  std::size_t count = project.database.empty() ? 0 : 1;
  for (const auto& group : project.objects)
    for (const ProjectObject& object : group) count += object.partitions.empty() ? 1 : 2;
  log.logEvent(
      tav::messageEvent(tav::Message::projectRead,
                        {path, std::to_string(count),
                         project.build.empty() ? "" : "; its build " + project.build + " is not read"}));
  return {path, assembleProject(project, log)};
}

/// `report` is the folder of the report that led here, or empty.
Input openModel(const std::string& name, const std::string& folder, const FolderModel& model,
                const std::string& report, MessageLog& log) {
  if (const auto fault = faultOfName(folder))
    log.logEvent(tav::messageEvent(tav::Message::nameNotRead, {fault->file, fault->cause}));
  Input input(name, model.path);
  input.giveName(model.name, model.named);
  input.addReports(reportsOn(folder, report));
  return input;
}

void requireListed(const std::string& folder) {
  if (const std::string cause = causeOfUnlisted(folder); !cause.empty())
    tav::fail(tav::Message::inputNotRead, {folder, cause});
}

/// What is none of the forms that a report leads to.
std::optional<Input> openReport(const std::string& path, MessageLog& log) {
  const ReportLink link = followReport(path);
  if (!link.cause.empty()) return refuse(path, link.cause);
  if (link.model.empty()) return std::nullopt;
  if (const auto model = findFolderModel(link.model))
    return openModel(path, link.model, *model, link.report, log);
  requireListed(link.model);
  return refuse(path,
                "its report is on the model " + link.model + ", which is not there or has no definition");
}

Input openFolder(const std::string& path, MessageLog& log) {
  std::vector<std::string> found = definitionsIn(path);
  if (found.size() > 1) failSeveral(path, found);
  if (found.empty()) {
    if (std::optional<Input> report = openReport(path, log)) return std::move(*report);
    requireListed(path);
    return Input::refused(path, tav::messageEvent(tav::Message::folderWithoutDefinition, {path}));
  }
  if (const auto model = findFolderModel(found.front()))
    return openModel(found.front(), found.front(), *model, {}, log);
  requireListed(found.front());
  return openProject(found.front(), log);
}

Input openContainer(Input input) {
  Container container = readContainer(input.path(), input.name());
  if (!container.cause.empty()) return refuse(input.name(), container.cause);
  MemoryFile file(input.name());
  file.write(container.definition);
  Input definition(input.name(), std::move(file));
  const std::string name = std::filesystem::path(input.name()).stem().string();
  definition.giveName(name, false);
  if (container.hasReport) {
    definition.addReports({{input.path(), name, true}});
    definition.keepMemoryOf(std::move(input));
  }
  return definition;
}

/// A file, or what a pipe gave, by its content.
Input openContent(Input input, MessageLog& log) {
  const auto [beginning, error] = readBeginning(input.path());
  // What is not there is told by whoever reads it.
  if (!error.empty() && TAVFile(TAVString(input.path())).exists())
    tav::fail(tav::Message::inputNotRead, {input.name(), error});
  if (isContainer(beginning)) return openContainer(std::move(input));
  if (hasExtension(input.name(), kProjectExtension) || isProject(beginning)) {
    if (input.isInPlace()) return openProject(input.name(), log);
    return refuse(input.name(),
                  "the list of files of a project; name it by its path, so that they are found");
  }
  if (input.isInPlace())
    if (std::optional<Input> report = openReport(input.name(), log)) return std::move(*report);
  const std::string foreign = foreignContent(beginning, input.name());
  return foreign.empty() ? std::move(input) : refuse(input.name(), foreign);
}

Input recognise(const std::string& argument, MessageLog& log) {
  // Of a closed one the number would be the next open file's.
  if (argument == "-" && fcntl(STDIN_FILENO, F_GETFD) < 0) failToRead(kStandardInput);
  if (argument == "-") return openContent(readStream(kStandardInput, STDIN_FILENO), log);
  if (const auto place = estatePlace(argument)) return openEstateModel(argument, *place);
  if (isStream(argument)) return openContent(readPipe(argument), log);
  std::error_code ignored;  // what cannot be asked for is told by whoever opens it
  if (std::filesystem::is_directory(argument, ignored)) return openFolder(argument, log);
  return openContent(Input(argument), log);
}

}  // namespace

Input::Input(std::string path) : name_(path), path_(std::move(path)) {}

Input::Input(std::string name, MemoryFile file)
    : name_(std::move(name)), path_(file.path()), memory_(std::move(file)) {}

void Input::giveName(std::string name, bool isNamed) {
  model_ = std::move(name);
  isNamed_ = isNamed;
}

void Input::keepMemoryOf(Input&& other) {
  archive_ = std::move(other.memory_);
}

void Input::addReports(std::vector<ReportPlace> reports) {
  std::move(reports.begin(), reports.end(), std::back_inserter(reports_));
}

Input Input::refused(std::string path, TAVLogEvent why) {
  Input input(std::move(path));
  input.refusal_ = std::move(why);
  return input;
}

bool Input::isSavedModel() const {
  return tav::isSavedModel(path_);
}

Input openInput(const std::string& argument, MessageLog& log) {
  Input input = recognise(argument, log);
  if (input.isInMemory()) log.callFile(input.path(), input.name());
  prepareHeapFor(input.path());
  return input;
}

}  // namespace host
