#include "messages/message.h"

#include <array>

#include "framework/std/exception.h"
#include "framework/std/literal.h"

namespace tav {
namespace {

constexpr std::array kRows{
    MessageRow{Message::outputNotWritten, "XMLABRIDGE_F0001", "Standard output cannot be written: {0}",
               "The disk is full, or nobody reads the pipe any longer."},
    MessageRow{
        Message::pluginNotLoaded, "XMLABRIDGE_F0002", "The plug-in cannot be loaded: {0}",
        "The folder lib beside the program's own folder bin is incomplete; install the program again."},
    MessageRow{Message::noFileOption, "XMLABRIDGE_F0003", "The plug-in has no option for a file to read.",
               "The plug-in is not the one that came with the program."},
    MessageRow{Message::noModel, "XMLABRIDGE_F0004", "{0}: the import gave no model.",
               "The importer of tabular definitions failed; the messages before this one tell why."},
    MessageRow{
        Message::noDefinition, "XMLABRIDGE_E0005",
        "{0}: no database definition was found; expected a Create script of a Database, a Batch with an "
        "Alter of a Database, or a Database document.",
        "The file is something else, such as a script that processes objects or alters a part of a "
        "database."},
    MessageRow{Message::outOfMemory, "XMLABRIDGE_F0006", "Out of memory.",
               "The definition needs more memory than the machine or its limits allow."},
    MessageRow{Message::internalError, "XMLABRIDGE_F0007", "Internal error: {0}",
               "A defect of the program; please report it."},
    MessageRow{
        Message::inputNotRead, "XMLABRIDGE_F0008", "{0} cannot be read: {1}",
        "Standard input is closed or a folder, the system refuses the file, or there is no memory for what a "
        "pipe gives."},
    MessageRow{Message::ambiguousName, "XMLABRIDGE_F0010", "'{0}' may mean{1}",
               "Several objects have this name: give a path or a qualified name from the list."},
    MessageRow{Message::unknownName, "XMLABRIDGE_F0011", "'{0}' is the name of nothing in the model{1}",
               "Nothing has this name; names that are spelled alike follow."},
    MessageRow{Message::unknownInModels, "XMLABRIDGE_F0013",
               "'{0}' is the name of nothing in the {2} models{1}",
               "None of the models has something of this name; names that are spelled alike follow."},
    MessageRow{Message::belowCoverage, "XMLABRIDGE_E0012",
               "{0} % trace back to a database column, less than the required {1} %.",
               "The coverage is below --fail-under."},
    MessageRow{Message::keySentInClear, "XMLABRIDGE_W0019",
               "The key for {0} goes over the network unencrypted: use https.",
               "An API key, or a user and password in the URL of --post, is sent with http."},
    MessageRow{Message::badApiKey, "XMLABRIDGE_F0020",
               "OPENLINEAGE_API_KEY holds a control character, such as a line end.",
               "No HTTP header can hold such a key."},
    MessageRow{
        Message::eventNotPosted, "XMLABRIDGE_F0021", "Event {0} of {1} could not be posted to {2}{3}: {4}",
        "The lineage server refused the event, or could not be reached; events before it were posted."},
    MessageRow{Message::signalsNotWatched, "XMLABRIDGE_F0022", "Signals cannot be watched: {0}",
               "The system refuses a file descriptor for signals."},
    MessageRow{Message::importKilled, "XMLABRIDGE_F0023", "The import was ended by signal {0} ({1}).",
               "One of several imports crashed or was killed, by the system for want of memory perhaps; the "
               "others go on."},
    MessageRow{Message::importEnded, "XMLABRIDGE_S0024", "{0} ({1} of {2})",
               "The outcome of one of several imports."},
    MessageRow{Message::folderNotMade, "XMLABRIDGE_F0025", "{0}: the folder cannot be made: {1}",
               "The folder of --out-dir is missing and may not be made."},
    MessageRow{Message::processNotStarted, "XMLABRIDGE_F0026", "No process can be started for it: {0}",
               "The system's limit of processes or file descriptors is reached; lower --jobs."},
    MessageRow{Message::httpNotAvailable, "XMLABRIDGE_F0027", "HTTP is not available: {0}",
               "The library libcurl is missing, or cannot be set up."},
    MessageRow{Message::duplicateInput, "XMLABRIDGE_W0028", "named more than once; it is imported once.",
               "Two arguments name the same file."},
    MessageRow{Message::processesNotAwaited, "XMLABRIDGE_F0029", "Processes cannot be awaited: {0}",
               "The system refuses to wait for several imports at a time."},
    MessageRow{Message::inputWouldBeReplaced, "XMLABRIDGE_F0030", "{0}: the output would replace the input",
               "One of the files that an export to csv writes is its input: choose another name."},
    MessageRow{
        Message::databaseFailed, "XMLABRIDGE_F0031", "{0}: {1}",
        "SQLite cannot open or write the database, or its rows are damaged. The database is unchanged."},
    MessageRow{Message::foreignDatabase, "XMLABRIDGE_F0032",
               "{0}: the file exists and is no lineage database of this program",
               "It is left as it is: choose another name."},
    MessageRow{
        Message::otherSchemaVersion, "XMLABRIDGE_F0033",
        "{0}: its tables are of version {1} and those of this program of version {2}; import the definitions "
        "again, into a new database",
        "The database was written by another version of the program; it is left as it is."},
    MessageRow{Message::databaseLocked, "XMLABRIDGE_F0034", "{0}: another process keeps the database locked",
               "It was locked for a minute; try again."},
    MessageRow{Message::definitionGone, "XMLABRIDGE_W0035",
               "it is no longer there, and its model is still in the estate; --prune removes it",
               "A definition below a folder that was imported again is gone: it was moved or deleted."},
    MessageRow{Message::definitionRemoved, "XMLABRIDGE_S0036", "it is no longer there; its model is removed",
               "What is known of its versions stays in the estate."},
    MessageRow{
        Message::documentNotKept, "XMLABRIDGE_F0037",
        "{0}: the document of its version of {1} is not kept, so it is not compared",
        "It was imported with --no-history since; the other models are compared, and the exit code is 6."},
    MessageRow{Message::badMapRule, "XMLABRIDGE_F0038", "{0}:{1}: {2}",
               "A line of the file of --map is no rule; docs/openlineage.md says what rules are."},
    MessageRow{
        Message::projectRead, "XMLABRIDGE_S0040", "Reading the project {0}: {1} files{2} ...",
        "A project is read from the files that it lists, which are usually newer than what it was built "
        "into."},
    MessageRow{Message::listedFileLost, "XMLABRIDGE_E0041",
               "{0}: {1}; the project {2} is imported without this file.",
               "A file that the project lists is missing or broken. The rest is imported, and the exit code "
               "is 6."},
    MessageRow{Message::strayPartitions, "XMLABRIDGE_W0042",
               "{0}: its partitions of the measure group '{1}' are passed over: {2} has no such group.",
               "The files of a cube and of its partitions do not fit together."},
    MessageRow{Message::severalDefinitions, "XMLABRIDGE_F0043",
               "{0} holds several definitions, and one is wanted: name one of {1}",
               "Most commands take all of a folder or an estate; this one, or this place, takes one. A model "
               "of an estate is named estate.db#Model."},
    MessageRow{Message::folderWithoutDefinition, "XMLABRIDGE_E0044",
               "{0}: the folder holds no definition; expected a project (.dwproj), a semantic model "
               "(definition/ or model.bim) or files in TMDL. To import all files below it, use --out-dir.",
               "Definitions in files of their own are named one by one."},
    MessageRow{Message::foreignInput, "XMLABRIDGE_E0045", "{0}: {1}",
               "The input is something else than a definition; the text says what, and what to do."},
    MessageRow{Message::containerNotRead, "XMLABRIDGE_F0046", "{0}: the container cannot be read: {1}",
               "A .pbit file is damaged, or made to grow beyond all measure when it is unpacked."},
    MessageRow{Message::fileListedTwice, "XMLABRIDGE_W0047",
               "{0}: the project {1} lists this file twice; it is read once.", "Nothing is lost."},
    MessageRow{Message::reportFileLost, "XMLABRIDGE_E0048",
               "{0}: {1}; the report {2} is read without this file.",
               "A file of a report on the model is missing or broken. The rest is read, and the exit code is "
               "6."},
    MessageRow{Message::pagerNotStarted, "XMLABRIDGE_W0049",
               "The pager '{0}' cannot be started; the answer is shown without.",
               "XMLA_PAGER or PAGER names something that is no program."},
    MessageRow{Message::rulesNotRead, "XMLABRIDGE_F0050", "{0}: {1}",
               "A rule file of check is missing, no YAML, or says something that no rule has."},
    MessageRow{Message::unknownInEstate, "XMLABRIDGE_F0051", "{0}: the estate has {1} called '{2}'{3}",
               "Behind # stands the name of a model, or the path of its definition or its end."},
    MessageRow{Message::modelNotKept, "XMLABRIDGE_F0052",
               "{0}: the database has the rows of {1}, but not its document; trace and impact can tell of it",
               "It was exported to the database. What is imported with --estate can be asked everything."},
    MessageRow{Message::modelGone, "XMLABRIDGE_W0053", "{0}: the model is not there any more.",
               "check compares two folders or estates, and a model is only in the earlier one."},
    MessageRow{Message::daxNotRead, "XMLABRIDGE_E0054",
               "{0} What expressions and queries in DAX name is left out of the reports.",
               "Reports on the model hold DAX, which Java reads. The rest is read, and the exit code is 6."},
    MessageRow{
        Message::nameNotRead, "XMLABRIDGE_W0058",
        "{0}: {1}; the definition's own name or the folder's is used.",
        "A file that says what a model, report or database is called is broken. Nothing else is lost."},
    MessageRow{Message::noEventTime, "TAVLINEAGE_F0001", "{0}: its time cannot be read: {1}",
               "The time of lineage events is that of the input, which is gone; or set SOURCE_DATE_EPOCH."},
};

constexpr bool isOrdered() {
  for (std::size_t i = 0; i < kRows.size(); ++i)
    if (kRows[i].message != static_cast<Message>(i)) return false;
  return kRows.back().message == Message::noEventTime;
}
static_assert(isOrdered(), "each message has a row, in the order of the enumeration");

const MessageRow& rowOf(Message message) noexcept {
  return kRows[static_cast<std::size_t>(message)];
}

std::int32_t severityOfRow(const MessageRow& row) {
  const char letter = row.identifier[row.identifier.find('_') + 1];
  for (std::int32_t severity = kSeverityFatal; severity < kSeverityDebug; ++severity)
    if (severityName(severity).front() == letter) return severity;
  return kSeverityDebug;
}

TAVString textOf(const MessageRow& row, std::initializer_list<std::string_view> arguments) {
  TAVStringArray array;
  for (const std::string_view argument : arguments) array.add(argument);
  return TAVParameterizedTextLiteral(row.identifier, row.text).createParameterizedText(array);
}

}  // namespace

bool endsInList(std::string_view identifier) noexcept {
  const auto is = [&](Message message) { return rowOf(message).identifier == identifier; };
  return is(Message::ambiguousName) || is(Message::unknownName) || is(Message::unknownInModels);
}

std::span<const MessageRow> messageRows() noexcept {
  return kRows;
}

std::string messageText(Message message, std::initializer_list<std::string_view> arguments) {
  const MessageRow& row = rowOf(message);
  return "[" + std::string(row.identifier) + "] " + textOf(row, arguments).str();
}

TAVLogEvent messageEvent(Message message, std::initializer_list<std::string_view> arguments) {
  const MessageRow& row = rowOf(message);
  return {textOf(row, arguments), row.identifier, severityOfRow(row), TAVString()};
}

void fail(Message message, std::initializer_list<std::string_view> arguments) {
  fail(rowOf(message).identifier, textOf(rowOf(message), arguments));
}

}  // namespace tav
