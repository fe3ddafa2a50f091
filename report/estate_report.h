#pragma once

// The page in front of the reports of several models: the models, the tables that they share, and a search
// over all of them, in one self-contained file.

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lineage/coverage.h"

namespace tav {

class JsonWriter;

/// Takes in one model after the other, of which it keeps what the page tells and no more.
class EstateReport {
 public:
  /// `input` is where the model was read from, `page` the file of its report, beside that of the page.
  /// Passwords are masked.
  void add(const LineageGraph& graph, const std::string& input, const std::string& page);
  void addFailure(const std::string& input, const std::string& cause);

  /// Writes the page. `names` are those of the models, in their order, which differ. Whether the stream took
  /// everything is the caller's to check.
  void write(const std::vector<std::string>& names, std::string_view program, std::ostream& out) const;

 private:
  struct Model {
    std::string name;
    std::string input;
    std::string page;
    std::size_t cubes = 0;
    CoverageCount attributes;
    CoverageCount measures;
    std::size_t openNames = 0;
    std::vector<std::string> read;  // the models that it is over, letter case folded
  };
  struct Table {
    std::string path;
    std::vector<std::size_t> models;
  };
  struct Name {
    NodeKind kind;
    std::string text;
    std::size_t model;
    std::string path;
  };

  void addTable(const LineageGraph& graph, NodeId id);
  void addRead(const LineageGraph& graph, NodeId id);
  void writeModels(JsonWriter& json, const std::vector<std::string>& names) const;
  void writeTables(JsonWriter& json) const;
  void writeNames(JsonWriter& json) const;
  [[nodiscard]] std::string data(const std::vector<std::string>& names, std::string_view program) const;
  [[nodiscard]] std::vector<const Table*> sharedTables() const;
  [[nodiscard]] std::unordered_map<std::string, std::size_t> placesByName() const;

  std::vector<Model> models_;
  std::vector<std::pair<std::string, std::string>> failures_;
  std::unordered_map<std::string, Table> tables_;  // by what all models know them by
  /// Models that others read, letter case folded, and the server; empty where several are named.
  std::unordered_map<std::string, std::string> servers_;
  std::vector<Name> names_;
  bool hasAllNames_ = true;
};

}  // namespace tav
