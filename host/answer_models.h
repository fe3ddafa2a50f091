#pragma once

// The models that a command answers over: one, or many together.

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "host/import_run.h"
#include "host/map_option.h"
#include "host/message_log.h"
#include "lineage/joined_graph.h"

namespace host {

struct AnswerInputs {
  std::vector<std::string> paths;
  /// Whether there may be several, so that answers name their models.
  bool several = false;
  InputMaps maps;
  /// By their paths, those on the one model that there is then.
  std::vector<std::string> reports;
};

/// The inputs of a command, with every definition and saved model below it in the place of a folder, and
/// every model in it in the place of an estate. A folder that holds one definition is that; one that holds
/// none stands for itself, as an input that cannot be read. What is named twice is there once, with a
/// warning. Throws a usage error for an input without a name, and for reports on several models.
AnswerInputs findInputs(const std::vector<std::string>& inputs, GivenMap map, MessageLog& log,
                        const std::vector<std::string>& reports = {});

/// Models of inputs that are kept until they are answered for, with a graph each.
class KeptModels {
 public:
  /// Reads an input and keeps its model. Returns an exit code; without a database definition nothing is kept.
  /// Throws when it cannot be read.
  int add(const std::string& input, const tav::AddressMap& map, MessageLog& log);

  [[nodiscard]] std::size_t size() const noexcept { return models_.size(); }
  [[nodiscard]] const std::string& input(std::size_t place) const { return models_[place].input; }
  [[nodiscard]] const tav::LineageGraph& graph(std::size_t place) const { return models_[place].graph; }
  [[nodiscard]] tav::DetailedModel model(std::size_t place) const;
  /// All of them with names that differ, in the order in which they were added.
  [[nodiscard]] std::vector<tav::JoinedModels::Model> named() const;

 private:
  struct Kept {
    Kept(std::string from, KeptModel model, const tav::AddressMap& map);

    std::string input;
    KeptModel kept;
    tav::LineageGraph graph;
  };

  std::deque<Kept> models_;  // graphs stay where they are
};

/// Shows the models of all inputs to `use`, as a graph each and joined. Of several inputs, one that cannot be
/// read is an error in `log` and the others are shown; `use` is not called where none is left. Returns
/// the worst of their exit codes.
int withModels(AnswerInputs& inputs, MessageLog& log,
               const std::function<void(const tav::JoinedModels& graph)>& use);

/// Shows the model of one input after the other to `use`, each as long as that takes. One that cannot be
/// read is an error in `log`. Returns the worst of their exit codes.
int forEachModel(AnswerInputs& inputs, MessageLog& log,
                 const std::function<void(const std::string& input, const tav::LineageGraph& graph)>& use);

/// A model by the name of its database and the input that it comes from.
struct ModelName {
  std::string name;
  std::string input;
};
/// Names for several models, which differ: those of the databases, with the input behind one that several
/// have.
std::vector<std::string> nameModels(const std::vector<ModelName>& models);

/// Of two exit codes of commands that answer, the one that tells of more.
int worseOf(int a, int b);

/// Of one of several inputs, does what may fail; a failure is an error in `log` that names it. The exit code.
int guarded(const std::string& input, MessageLog& log, const std::function<int()>& read);

}  // namespace host
