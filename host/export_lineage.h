#pragma once

// What the exports for catalogues have beside other formats: options of their own, and a server to send to.

#include <memory>
#include <string>

#include "exports/formats.h"
#include "framework/model/model.h"
#include "host/command_line.h"
#include "host/lineage_post.h"
#include "host/message_log.h"
#include "host/posted_events.h"

namespace host {

/// Registers the options of lineage events and of proposals for DataHub; both structures are filled when the
/// command line is parsed.
void addLineageOptions(const CommandParser& parser, tav::ExportOptions& options, PostTarget& post);
/// Throws a usage error when one of them was given with another format.
void checkLineageOptions(const CommandParser& parser, const std::string& format);

/// Events of one model or several that are posted over one connection, with the API key of the environment's
/// OPENLINEAGE_API_KEY, if there is one.
class EventPosting {
 public:
  /// Warns of a key that others could read on its way. Throws what Posting and PostedEvents throw.
  EventPosting(const PostTarget& target, MessageLog& log);

  /// Sends the events of a model but for those that the server has. Throws when one was not taken.
  void post(const tav::DetailedModel& model, const tav::ExportOptions& options);
  /// Tells how many events there were.
  void finish();

 private:
  MessageLog& log_;
  std::string shown_;
  PostedEvents posted_;
  std::unique_ptr<LineagePost> post_;
  std::size_t sent_ = 0;
  std::size_t skipped_ = 0;
};

}  // namespace host
