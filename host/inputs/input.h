#pragma once

// What a user gives a command to read, made one path that the plug-in and the readers of saved models open.

#include <optional>
#include <string>

#include "host/inputs/memory_file.h"
#include "host/message_log.h"

namespace host {

/// An input, recognised once and held open as long as its object lives.
class Input {
 public:
  /// An input that is read where it is.
  explicit Input(std::string path);
  /// One that lies in memory and is called `name` in messages and models.
  Input(std::string name, MemoryFile file);

  /// What it is called.
  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  /// Where it is read.
  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  /// Whether it is read where the user said.
  [[nodiscard]] bool isInPlace() const noexcept { return !memory_; }
  [[nodiscard]] bool isSavedModel() const;

  /// Why there is no definition in it, as an error; null when there may be one.
  [[nodiscard]] const TAVLogEvent* refusal() const noexcept { return refusal_ ? &*refusal_ : nullptr; }
  /// An input that holds no definition.
  static Input refused(std::string path, TAVLogEvent why);

 private:
  std::string name_;
  std::string path_;
  std::optional<MemoryFile> memory_;
  std::optional<TAVLogEvent> refusal_;
};

/// Opens what a user named: a file; standard input for "-", or a pipe, which are read to their end; a project
/// by its file or folder, whose files are put together. Messages in `log` about what is read then call it by
/// its name, and what of it is lost is an error there. Throws when it cannot be read.
Input openInput(const std::string& argument, MessageLog& log);

}  // namespace host
