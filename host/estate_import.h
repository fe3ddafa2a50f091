#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "exports/answers/shown_text.h"
#include "host/estate_plan.h"
#include "host/message_log.h"

namespace host {

/// What became of a file; the order is that of the totals.
enum class Outcome { ok, warnings, unchanged, incomplete, noDefinition, failed };
std::string_view outcomeName(Outcome outcome);

struct EstateResult {
  Outcome outcome = Outcome::failed;
  std::string cause;  ///< in words, when no model of a database was saved
  std::size_t warnings = 0;
  bool unchanged = false;  ///< whether there was nothing to do
  double seconds = 0;
  std::string summary;  ///< what an import of the file alone tells with --json; empty when it gave no model
};

/// The results in the order of the files, and the number of the signal that ended the work, or 0.
struct EstateRun {
  std::vector<EstateResult> results;
  double seconds = 0;
  int signal = 0;
};

/// Imports each file by a process of its own, at most `jobs` at a time, each with the same `options`, so that
/// nothing that befalls one touches another. Their warnings and failures go to `log` with the file's name.
/// SIGINT, SIGTERM and SIGHUP end the processes, which remove what they left unfinished.
EstateRun importEstate(const std::vector<EstateFile>& files, std::size_t jobs,
                       const std::vector<std::string>& options, MessageLog& log);

/// The exit code for these results.
int exitCodeOf(const EstateRun& run);

/// How many of the files have that outcome.
std::size_t countOf(const EstateRun& run, Outcome outcome);

/// A table for people, with totals; where that is wider than the style allows, a few lines for each file.
/// What all files and all models lie in is told once.
void writeEstateTable(const std::vector<EstateFile>& files, const EstateRun& run, const tav::TextStyle& style,
                      std::ostream& out);
/// The same as one JSON document.
void writeEstateJson(const std::vector<EstateFile>& files, const EstateRun& run, std::ostream& out);
/// What becomes of the results: nothing when a signal ended the work or nobody wants them.
void tellEstate(const std::vector<EstateFile>& files, const EstateRun& run, bool json, const MessageLog& log);

}  // namespace host
