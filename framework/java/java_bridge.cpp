#include "framework/java/java_bridge.h"

#include <cstring>

#include "framework/java/child_process.h"
#include "framework/java/importer_output.h"
#include "framework/java/option_file.h"
#include "framework/std/exception.h"
#include "framework/std/temporary_folder.h"

namespace {

std::string said(const tav::ErrorText& errors) {
  const std::string text = errors.summary();
  return text.empty() ? "." : ": " + text;
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
  tav::ChildProcess process(java.str(), {"-cp", classPath_.str(), mainClass_.str(),
                                         optionFile.getPath().str(), outputFile.getPath().str()});
  const tav::ProcessEnd end = process.wait([&](std::string_view bytes) { messages.add(bytes); },
                                           [&](std::string_view bytes) { errors.add(bytes); });
  messages.finish();
  if (end.bySignal || end.number != 0) failAs(end, errors, optionFile);
  if (!outputFile.exists())
    tav::fail("TAVJAVA_F0007", "The Java importer wrote no model" + optionFile.original(said(errors)).str());
  if (const std::string rest = errors.summary(); !rest.empty())
    report({rest, "TAVJAVA_I0009", tav::kSeverityInfo, TAVString()});
}
