#pragma once

#include <chrono>
#include <string>

#include "exports/formats.h"

namespace tav {

/// Puts a model into the SQLite database `path`, which is made when it is missing, instead of what was loaded
/// before from the same input under the same name; other models stay. All of it or, when that throws,
/// nothing. Waits up to `patience` for other processes that write to the database.
void exportSqlite(const DetailedModel& model, const ExportOptions& options, const std::string& path,
                  std::chrono::milliseconds patience);

}  // namespace tav
