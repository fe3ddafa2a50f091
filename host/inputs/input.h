#pragma once

// What a user gives a command to read, made one path that the plug-in and the readers of saved models open.

#include <optional>
#include <string>
#include <vector>

#include "host/inputs/memory_file.h"
#include "host/inputs/semantic_model.h"
#include "host/message_log.h"
#include "host/reports/report_files.h"

namespace host {

/// An input, recognised once and held open as long as its object lives.
class Input {
 public:
  /// An input that is read where it is.
  explicit Input(std::string path);
  /// One that lies in memory and is called `name` in messages and models.
  Input(std::string name, MemoryFile file);
  /// One that is read at another path.
  Input(std::string name, std::string path) : name_(std::move(name)), path_(std::move(path)) {}

  /// What it is called.
  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  /// Where it is read.
  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  /// Whether it is read where the user said.
  [[nodiscard]] bool isInPlace() const noexcept { return path_ == name_; }
  [[nodiscard]] bool isInMemory() const noexcept { return memory_.has_value(); }
  [[nodiscard]] bool isSavedModel() const;

  /// What its model is called, whose definition calls it `own`.
  [[nodiscard]] std::string nameOfModel(const std::string& own) const {
    return modelName(own, model_, isNamed_);
  }
  /// What is around the definition gives the model a name, and says whether it counts more than its own.
  void giveName(std::string name, bool isNamed);

  /// The reports on its model that are kept with it.
  [[nodiscard]] const std::vector<ReportPlace>& reports() const noexcept { return reports_; }
  void addReports(std::vector<ReportPlace> reports);
  /// Keeps what another input lies in, for reports that are read there.
  void keepMemoryOf(Input&& other);

  /// Why there is no definition in it, as an error; null when there may be one.
  [[nodiscard]] const TAVLogEvent* refusal() const noexcept { return refusal_ ? &*refusal_ : nullptr; }
  /// An input that holds no definition.
  static Input refused(std::string path, TAVLogEvent why);

 private:
  std::string name_;
  std::string path_;
  std::optional<MemoryFile> memory_;
  std::optional<MemoryFile> archive_;
  std::optional<TAVLogEvent> refusal_;
  std::vector<ReportPlace> reports_;
  std::string model_;
  bool isNamed_ = false;
};

/// Opens what a user named: a file; standard input for "-", or a pipe, which are read to their end; a project
/// by its file or folder, whose files are put together; a semantic model by its folder, by the project or
/// report that leads to it, or by the template that holds it; the document of a model in an estate. Messages
/// in `log` about what is read then call it by its name, and what of it is lost is an error there. Throws
/// when it cannot be read.
Input openInput(const std::string& argument, MessageLog& log);

}  // namespace host
