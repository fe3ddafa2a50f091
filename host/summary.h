#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "framework/details/detailed_model.h"
#include "host/message_log.h"

namespace host {

/// What an import found. Copies in cubes, linked measures and conditions are not counted.
struct Summary {
  /// Things of one kind, and how many of them trace back to a database column (LineageGraph::tracedBack).
  struct Reach {
    std::size_t count = 0;
    std::size_t reached = 0;
  };
  std::string database;  ///< its name, a password in it masked
  std::size_t dataSources = 0;
  std::size_t tables = 0;
  std::size_t columns = 0;
  std::size_t dimensions = 0;
  std::size_t cubes = 0;
  std::size_t perspectives = 0;
  std::size_t kpis = 0;
  std::size_t rowCounts = 0;            ///< of the measures, those that count rows
  std::size_t calculatedRowCounts = 0;  ///< of the calculated measures, likewise
  std::size_t openExpressions = 0;      ///< those with references that could not be resolved
  Reach attributes;
  Reach measures;
  Reach calculatedMeasures;
};

/// Counts the nodes of the model's lineage graph. Renumbers the model (see tav::Numbering).
Summary summarize(const tav::DetailedModel& model);

/// Writes the summary for people, with the number of references that could not be resolved.
void writeSummary(const Summary& summary, std::size_t unresolved, std::ostream& out);

/// The same as one JSON object on one line, with the file that the model is saved in.
std::string summaryAsJson(const Summary& summary, std::size_t unresolved, const std::string& output);

/// Writes either to standard output, and where the model was saved; nothing for people who want to read
/// nothing.
void tellSummary(const Summary& summary, const std::string& output, bool json, const MessageLog& log);

}  // namespace host
