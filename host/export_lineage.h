#pragma once

// What the exports for catalogues have beside other formats: options of their own, and a server to send to.

#include <CLI/App.hpp>
#include <string>

#include "exports/formats.h"
#include "framework/model/model.h"
#include "host/lineage_post.h"
#include "host/message_log.h"

namespace host {

/// Registers the options of lineage events and of proposals for DataHub; both structures are filled when the
/// command line is parsed.
void addLineageOptions(CLI::App& parser, tav::ExportOptions& options, PostTarget& post);
/// Throws a usage error when one of them was given with another format.
void checkLineageOptions(const CLI::App& parser, const std::string& format);

/// Sends the events of a model with the API key of the environment's OPENLINEAGE_API_KEY, if there is one,
/// and tells how many there were. Throws when one was not taken.
void postLineage(const tav::DetailedModel& model, const tav::ExportOptions& options, PostTarget target,
                 MessageLog& log);

}  // namespace host
