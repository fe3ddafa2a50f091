#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What an expression names.
struct DaxUse {
  enum class Kind : std::uint8_t {
    uses,    ///< a column or measure
    counts,  ///< a table, by the number of its rows
    takes,   ///< a table, for its rows
    calls,   ///< a function of the model
    lacks,   ///< a name that leads to nothing
  };
  Kind kind;
  std::size_t object = 0;  ///< of the first three: the place of what is named
  std::string name{};      ///< of the others, as DAX writes it
};

/// Queries in DAX on a model that is finished, and the measures of reports. They are read by the parser of
/// the importer of tabular definitions, which runs once for all.
class DaxQueries {
 public:
  // The objects of the model, before all queries. Their places count from 0 in the order in which tables,
  // columns, measures and the measures of reports are added.
  void addTable(std::string_view name) { addLine({"table", name}); }
  /// A column of the table before.
  void addColumn(std::string_view name) { addLine({"column", name}); }
  void addMeasure(std::string_view name) { addLine({"measure", name}); }
  void addFunction(std::string_view name, std::string_view text) { addLine({"function", name, text}); }

  /// What is added from now on belongs to another report.
  void startReport() { addLine({"report"}); }
  /// A measure of the report, before what may use it.
  void addOwnMeasure(std::string_view name) { addLine({"own", name}); }
  /// `table` is the one in which a measure is listed, or empty.
  void add(std::string_view table, std::string_view text);

  [[nodiscard]] bool empty() const noexcept { return count_ == 0; }
  /// What each query names. Throws a TAVException when Java cannot be run.
  [[nodiscard]] std::vector<std::vector<DaxUse>> read() const;

 private:
  void addLine(std::initializer_list<std::string_view> fields);

  std::string lines_;
  std::size_t count_ = 0;
};

}  // namespace host
