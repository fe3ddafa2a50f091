#pragma once

// What the program itself has to say about its work: one row for each message, whose identifier means one
// thing and is listed in the manual. The plug-in and the framework have messages of their own.

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "framework/std/log.h"

namespace tav {

/// The messages, in the order of their rows.
enum class Message : std::uint8_t {
  outputNotWritten,
  pluginNotLoaded,
  noFileOption,
  noModel,
  noDefinition,
  outOfMemory,
  internalError,
  inputNotRead,
  ambiguousName,
  unknownName,
  unknownInModels,
  belowCoverage,
  keySentInClear,
  badApiKey,
  eventNotPosted,
  signalsNotWatched,
  importKilled,
  importEnded,
  folderNotMade,
  processNotStarted,
  httpNotAvailable,
  duplicateInput,
  processesNotAwaited,
  inputWouldBeReplaced,
  databaseFailed,
  foreignDatabase,
  otherSchemaVersion,
  databaseLocked,
  definitionGone,
  definitionRemoved,
  documentNotKept,
  badMapRule,
  projectRead,
  listedFileLost,
  strayPartitions,
  severalDefinitions,
  folderWithoutDefinition,
  foreignInput,
  containerNotRead,
  fileListedTwice,
  reportFileLost,
  pagerNotStarted,
  rulesNotRead,
  unknownInEstate,
  modelNotKept,
  modelGone,
  daxNotRead,
  nameNotRead,
  noEventTime,
};

struct MessageRow {
  Message message;
  std::string_view identifier;  ///< the letter in it is that of the severity
  std::string_view text;        ///< with the placeholders {0}, {1} and so on
  std::string_view advice;      ///< what the manual says of it: the cause, or what to do
};

/// Whether a message with this identifier ends in a list, each item of which is a line of its own.
bool endsInList(std::string_view identifier) noexcept;

/// Every message, ordered by number.
std::span<const MessageRow> messageRows() noexcept;

/// "[identifier] text" with the arguments in place of {0}, {1} and so on.
std::string messageText(Message message, std::initializer_list<std::string_view> arguments = {});

/// The message as a record for a log, with the severity that its identifier names.
TAVLogEvent messageEvent(Message message, std::initializer_list<std::string_view> arguments = {});

/// Throws a TAVException with messageText().
[[noreturn]] void fail(Message message, std::initializer_list<std::string_view> arguments = {});

}  // namespace tav
