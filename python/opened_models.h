#pragma once

// Models that were opened from Python, and the answers over them. It knows nothing of Python's own types.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "exports/answers/lineage_text.h"
#include "host/answer_models.h"
#include "lineage/joined_graph.h"

namespace python {

/// Something that the log was told, passwords masked.
struct Message {
  std::string file;  ///< one of several that it is about; empty where there is only one
  std::string level;
  std::string identifier;
  std::string text;
};

/// What a question ends with that has no answer.
class Fault : public std::runtime_error {
 public:
  explicit Fault(Message message);

  [[nodiscard]] const Message& message() const noexcept { return message_; }

 private:
  Message message_;
};

/// An answer as tools and as people read it.
struct Answer {
  std::string json;
  std::string text;
};

class OpenedModels {
 public:
  struct Opened {
    std::shared_ptr<OpenedModels> models;
    std::vector<Message> messages;
    bool complete = true;  ///< whether all that there is to read was read
  };

  /// Opens what the program takes as inputs; `map` is a file of rules for addresses, empty for none. Where
  /// `several` are asked for, one that cannot be read is an error among the messages. Throws Fault for the
  /// only one, where nothing is left, and where one was asked for and there are several. `beforeEach` is
  /// called before each definition is read, and may throw to end the opening.
  static Opened open(const std::vector<std::string>& inputs, const std::string& map, bool several,
                     const std::function<void()>& beforeEach);

  OpenedModels(std::shared_ptr<const host::KeptModels> kept, std::vector<std::size_t> places, bool named);

  /// One of them by itself, which nobody has to name.
  [[nodiscard]] std::shared_ptr<OpenedModels> only(std::size_t place) const;

  /// What answers call the models.
  [[nodiscard]] std::vector<std::string> names() const;
  /// What each was opened from.
  [[nodiscard]] std::vector<std::string> inputs() const;

  /// What `name` comes from, or what depends on it. Throws Fault for a name of nothing, or of several things.
  [[nodiscard]] Answer lineage(const std::string& name, const tav::LineageWalk& walk) const;
  /// The same for an object that an answer told of.
  [[nodiscard]] Answer lineageOf(tav::JoinedId id, const tav::LineageWalk& walk) const;
  /// All objects and edges.
  [[nodiscard]] std::string graph() const;
  [[nodiscard]] Answer unused(const std::vector<std::string>& groups) const;
  /// Of the only one.
  [[nodiscard]] Answer coverage() const;
  /// Of the only one, as the export "json" writes it.
  [[nodiscard]] std::string document() const;
  /// How another model differs from the only one.
  [[nodiscard]] Answer diff(const OpenedModels& after, const std::string& map) const;

 private:
  [[nodiscard]] const tav::JoinedModels& joined() const noexcept { return *joined_; }
  [[nodiscard]] Answer tell(const tav::LineageQuestion& question) const;

  std::shared_ptr<const host::KeptModels> kept_;
  std::vector<std::size_t> places_;  // of the models in kept_
  std::unique_ptr<const tav::JoinedModels> joined_;
};

/// The version of the package.
std::string version();

}  // namespace python
