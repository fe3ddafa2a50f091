#include "framework/java/java_bridge.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "framework/java/child_process.h"
#include "framework/java/importer_output.h"
#include "framework/java/java_memory.h"
#include "framework/java/option_file.h"
#include "framework/std/exception.h"
#include "framework/std/temporary_folder.h"

namespace {

std::string said(const tav::ErrorText& errors) {
  const std::string text = errors.summary();
  return text.empty() ? "." : ": " + text;
}

/// Whether the user asks Java for something, by the variables that Java reads by itself. Two collectors would
/// be an error, and what is given on the command line would hide a heap that is asked for.
bool isAskedFor(std::string_view option) {
  for (const char* name : {"JDK_JAVA_OPTIONS", "JAVA_TOOL_OPTIONS"}) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nothing here sets it
    if (value && std::string_view(value).find(option) != std::string_view::npos) return true;
  }
  return false;
}

/// Beside the first jar there may be its classes as a Java has them in memory, with which that Java starts
/// sooner. Where they do not fit, another Java runs or the tree was moved, it must not say so: it would
/// warn on standard output.
void addClassArchive(const std::string& classPath, std::vector<std::string>& arguments) {
  std::filesystem::path archive = classPath.substr(0, classPath.find(':'));
  archive.replace_extension("jsa");
  std::error_code error;
  if (!std::filesystem::is_regular_file(archive, error)) return;
  arguments.push_back("-XX:SharedArchiveFile=" + archive.string());
  arguments.emplace_back("-Xshare:auto");
  if (isAskedFor("-Xlog")) return;
  arguments.emplace_back("-Xlog:disable");
  arguments.emplace_back("-Xlog:all=error:stderr");
}

/// The size of a file, or of all files in a folder; 0 of what cannot be looked at.
std::uint64_t sizeOf(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  if (!fs::is_directory(path, error)) {
    const std::uintmax_t bytes = fs::file_size(path, error);
    return error ? 0 : bytes;
  }
  std::uint64_t size = 0;
  fs::recursive_directory_iterator entry(path, fs::directory_options::skip_permission_denied, error);
  for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    std::error_code ignored;  // links that lead nowhere, files that went away
    const std::uintmax_t bytes = entry->is_regular_file(ignored) ? entry->file_size(ignored) : 0;
    if (!ignored) size += bytes;
  }
  return size;
}

/// An import is short and its heap small: the simple collector and the quick compiler start sooner and take
/// less processor time, and large inputs take no longer with them.
std::vector<std::string> javaArguments(const TAVOptionList& options, const std::string& classPath) {
  std::uint64_t size = 0;
  for (const TAVOption& option : options)
    if (option.getType() == OptionType::file) size += sizeOf(option.getValue().str());
  const std::uint64_t heap = tav::javaHeapFor(size, tav::machineMemory());
  // What Java itself has to say, that it cannot reserve its memory for instance, goes to standard error,
  // where the reasons of failures are looked for. So does the report of a failure of its own, of which it
  // would leave a file in the user's folder. The Java of another maker may not know all of these.
  std::vector<std::string> arguments{"-XX:+IgnoreUnrecognizedVMOptions", "-XX:TieredStopAtLevel=1",
                                     "-XX:CompressedClassSpaceSize=64m", "-XX:+DisplayVMOutputToStderr",
                                     "-XX:+ErrorFileToStderr"};
  if (!isAskedFor("-Xmx")) arguments.push_back("-Xmx" + std::to_string(heap >> 20) + "m");
  if (!isAskedFor("GC")) arguments.emplace_back("-XX:+UseSerialGC");
  addClassArchive(classPath, arguments);
  return arguments;
}

[[noreturn]] void failAs(const tav::ProcessEnd& end, const tav::ErrorText& errors,
                         const tav::OptionFile& options) {
  if (end.bySignal)
    tav::fail("TAVJAVA_F0005", "The Java importer was ended by signal " + std::to_string(end.number) + " (" +
                                   strsignal(end.number) + ")" + options.original(said(errors)).str());
  if (const std::string failure = errors.failure(); !failure.empty())
    throw TAVException(options.original(failure), buildStackTrace());
  tav::fail("TAVJAVA_F0006", "The Java importer failed with the exit code " + std::to_string(end.number) +
                                 options.original(said(errors)).str());
}

}  // namespace

TAVJavaBridge::TAVJavaBridge(TAVString mainClass, TAVString classPath, TAVLog* log,
                             TAVJavaExe::JavaVersion javaVersion)
    : mainClass_(std::move(mainClass)),
      classPath_(std::move(classPath)),
      log_(log),
      javaVersion_(javaVersion) {}

void TAVJavaBridge::javaImport(const TAVFile& outputFile, const TAVOptionList& options,
                               const TAVMetadataOrigin* /*origin*/) {
  // Java takes an empty class path for the folder that the user is in.
  if (classPath_.empty())
    tav::fail("TAVJAVA_F0004", "The Java importer is not installed: none of its archives was found.");
  const TAVString java = TAVJavaExe::find(javaVersion_);
  const tav::TemporaryFolder folder("TAVJavaBridge");
  const tav::OptionFile optionFile(folder.folder(), options);

  const auto report = [&](const TAVLogEvent& event) {
    if (log_)
      log_->logEvent({optionFile.original(event.getText()), event.getMessageId(), event.getSeverity(),
                      event.getExtra()});
  };
  tav::MessageLines messages(report);
  tav::ErrorText errors;
  std::vector<std::string> arguments = javaArguments(options, classPath_.str());
  arguments.insert(arguments.end(), {"-cp", classPath_.str(), mainClass_.str(), optionFile.getPath().str(),
                                     outputFile.getPath().str()});
  tav::ChildProcess process(java.str(), arguments);
  const tav::ProcessEnd end = process.wait([&](std::string_view bytes) { messages.add(bytes); },
                                           [&](std::string_view bytes) { errors.add(bytes); });
  messages.finish();
  if (end.bySignal || end.number != 0) failAs(end, errors, optionFile);
  if (!outputFile.exists())
    tav::fail("TAVJAVA_F0007", "The Java importer wrote no model" + optionFile.original(said(errors)).str());
  if (const std::string rest = errors.summary(); !rest.empty())
    report({rest, "TAVJAVA_I0009", tav::kSeverityInfo, TAVString()});
}
