#include "host/inputs/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "framework/serialization/model_reader.h"
#include "host/inputs/folder.h"
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

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all.append(all.empty() ? "" : ", ").append(text);
  return all;
}

Input openProject(const std::string& path, MessageLog& log) {
  const Project project = readProject(path, log);
  std::size_t count = project.database.empty() ? 0 : 1;
  for (const auto& group : project.objects)
    for (const ProjectObject& object : group) count += object.partitions.empty() ? 1 : 2;
  log.logEvent(tav::messageEvent(
      tav::Message::projectRead,
      {path, std::to_string(count), project.build.empty() ? "" : "; not " + project.build}));
  return {path, assembleProject(project, log)};
}

Input openFolder(const std::string& path, MessageLog& log) {
  const std::vector<std::string> found = definitionsIn(path);
  if (found.size() > 1) tav::fail(tav::Message::severalDefinitions, {path, joined(found)});
  if (found.empty())
    return Input::refused(path, tav::messageEvent(tav::Message::folderWithoutDefinition, {path}));
  return openProject(found.front(), log);
}

Input recognise(const std::string& argument, MessageLog& log) {
  // Of a closed one the number would be the next open file's.
  if (argument == "-" && fcntl(STDIN_FILENO, F_GETFD) < 0) failToRead(kStandardInput);
  if (argument == "-") return readStream(kStandardInput, STDIN_FILENO);
  if (isStream(argument)) return readPipe(argument);
  std::error_code ignored;  // what cannot be asked for is told by whoever opens it
  if (std::filesystem::is_directory(argument, ignored)) return openFolder(argument, log);
  return hasExtension(argument, kProjectExtension) ? openProject(argument, log) : Input(argument);
}

}  // namespace

Input::Input(std::string path) : name_(path), path_(std::move(path)) {}

Input::Input(std::string name, MemoryFile file)
    : name_(std::move(name)), path_(file.path()), memory_(std::move(file)) {}

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
  if (!input.isInPlace()) log.callFile(input.path(), input.name());
  return input;
}

}  // namespace host
