#include "framework/expression/query_words.h"

#include <algorithm>
#include <array>

#include "framework/expression/words.h"
#include "framework/std/dotted_name.h"
#include "framework/std/string.h"

namespace tav {

namespace {

struct Entry {
  std::string_view word;
  QuerySign sign;
};

// All lists are sorted.
constexpr std::array kSigns{Entry{"ALL", QuerySign::wordOperation},
                            Entry{"ALTER", QuerySign::statement},
                            Entry{"ANTI", QuerySign::joinKind},
                            Entry{"ANY", QuerySign::wordOperation},
                            Entry{"APPLY", QuerySign::join},
                            Entry{"ASC", QuerySign::direction},
                            Entry{"ASOF", QuerySign::joinKind},
                            Entry{"AT", QuerySign::zone},
                            Entry{"BEGIN", QuerySign::statement},
                            Entry{"BETWEEN", QuerySign::wordOperation},
                            Entry{"BY", QuerySign::wordOperation},
                            Entry{"CALL", QuerySign::statement},
                            Entry{"COLLATE", QuerySign::collate},
                            Entry{"CONNECT", QuerySign::connect},
                            Entry{"CONNECT_BY_ROOT", QuerySign::wordOperation},
                            Entry{"CREATE", QuerySign::create},
                            Entry{"CROSS", QuerySign::joinKind},
                            Entry{"CURRENT_DATE", QuerySign::literal},
                            Entry{"CURRENT_TIME", QuerySign::literal},
                            Entry{"CURRENT_TIMESTAMP", QuerySign::literal},
                            Entry{"CURRENT_USER", QuerySign::literal},
                            Entry{"DATE", QuerySign::typed},
                            Entry{"DATETIME", QuerySign::typed},
                            Entry{"DECLARE", QuerySign::statement},
                            Entry{"DELETE", QuerySign::statement},
                            Entry{"DESC", QuerySign::direction},
                            Entry{"DROP", QuerySign::statement},
                            Entry{"ESCAPE", QuerySign::wordOperation},
                            Entry{"EXCEPT", QuerySign::except},
                            Entry{"EXEC", QuerySign::statement},
                            Entry{"EXECUTE", QuerySign::statement},
                            Entry{"EXISTS", QuerySign::exists},
                            Entry{"FETCH", QuerySign::tail},
                            Entry{"FILTER", QuerySign::over},
                            Entry{"FOR", QuerySign::tail},
                            Entry{"FORCE", QuerySign::hint},
                            Entry{"FROM", QuerySign::from},
                            Entry{"FULL", QuerySign::joinKind},
                            Entry{"GO", QuerySign::statement},
                            Entry{"GROUP", QuerySign::group},
                            Entry{"GROUPING", QuerySign::wordOperation},
                            Entry{"HASH", QuerySign::joinKind},
                            Entry{"HAVING", QuerySign::where},
                            Entry{"IF", QuerySign::statement},
                            Entry{"IGNORE", QuerySign::hint},
                            Entry{"ILIKE", QuerySign::wordOperation},
                            Entry{"IN", QuerySign::wordOperation},
                            Entry{"INNER", QuerySign::joinKind},
                            Entry{"INSERT", QuerySign::insert},
                            Entry{"INTERSECT", QuerySign::intersect},
                            Entry{"INTERVAL", QuerySign::interval},
                            Entry{"INTO", QuerySign::into},
                            Entry{"JOIN", QuerySign::join},
                            Entry{"KEEP", QuerySign::over},
                            Entry{"LATERAL", QuerySign::lateral},
                            Entry{"LEFT", QuerySign::joinKind},
                            Entry{"LIKE", QuerySign::wordOperation},
                            Entry{"LIMIT", QuerySign::tail},
                            Entry{"LOCALTIME", QuerySign::literal},
                            Entry{"LOCALTIMESTAMP", QuerySign::literal},
                            Entry{"LOOP", QuerySign::joinKind},
                            Entry{"MATCH_RECOGNIZE", QuerySign::hint},
                            Entry{"MERGE", QuerySign::joinKind},
                            Entry{"MINUS", QuerySign::except},
                            Entry{"NATURAL", QuerySign::joinKind},
                            Entry{"NULLS", QuerySign::direction},
                            Entry{"OFFSET", QuerySign::tail},
                            Entry{"ON", QuerySign::on},
                            Entry{"OPTION", QuerySign::tail},
                            Entry{"ORDER", QuerySign::order},
                            Entry{"OUTER", QuerySign::joinKind},
                            Entry{"OVER", QuerySign::over},
                            Entry{"PARTITION", QuerySign::hint},
                            Entry{"PIVOT", QuerySign::pivot},
                            Entry{"PRINT", QuerySign::statement},
                            Entry{"PRIOR", QuerySign::wordOperation},
                            Entry{"QUALIFY", QuerySign::where},
                            Entry{"REGEXP", QuerySign::wordOperation},
                            Entry{"REMOTE", QuerySign::joinKind},
                            Entry{"RESPECT", QuerySign::direction},
                            Entry{"RETURN", QuerySign::statement},
                            Entry{"RIGHT", QuerySign::joinKind},
                            Entry{"RLIKE", QuerySign::wordOperation},
                            Entry{"SAMPLE", QuerySign::tail},
                            Entry{"SEL", QuerySign::shortSelect},
                            Entry{"SELECT", QuerySign::select},
                            Entry{"SEMI", QuerySign::joinKind},
                            Entry{"SESSION_USER", QuerySign::literal},
                            Entry{"SET", QuerySign::statement},
                            Entry{"SOME", QuerySign::wordOperation},
                            Entry{"START", QuerySign::connect},
                            Entry{"STRAIGHT_JOIN", QuerySign::join},
                            Entry{"SYSDATE", QuerySign::literal},
                            Entry{"SYSTEM_USER", QuerySign::literal},
                            Entry{"SYSTIMESTAMP", QuerySign::literal},
                            Entry{"TABLE", QuerySign::table},
                            Entry{"TABLESAMPLE", QuerySign::hint},
                            Entry{"TIME", QuerySign::typed},
                            Entry{"TIMESTAMP", QuerySign::typed},
                            Entry{"TRUNCATE", QuerySign::statement},
                            Entry{"UNION", QuerySign::unite},
                            Entry{"UNPIVOT", QuerySign::pivot},
                            Entry{"UPDATE", QuerySign::statement},
                            Entry{"USE", QuerySign::hint},
                            Entry{"USING", QuerySign::usingWord},
                            Entry{"VALUES", QuerySign::values},
                            Entry{"WHERE", QuerySign::where},
                            Entry{"WHILE", QuerySign::statement},
                            Entry{"WINDOW", QuerySign::window},
                            Entry{"WITH", QuerySign::with},
                            Entry{"WITHIN", QuerySign::over}};

constexpr std::array<std::string_view, 15> kWindowWords{
    "ASC",       "BY",        "CURRENT", "DESC", "EXCLUDE", "FOLLOWING", "GROUPS",   "ORDER",
    "PARTITION", "PRECEDING", "RANGE",   "ROW",  "ROWS",    "TIES",      "UNBOUNDED"};
constexpr std::array<std::string_view, 5> kValueMethods{"EXIST", "NODES", "QUERY", "TOSTRING", "VALUE"};
constexpr std::array<std::string_view, 3> kTypesOfMethods{"GEOGRAPHY", "GEOMETRY", "HIERARCHYID"};
constexpr std::array<std::string_view, 4> kFromFunctions{"EXTRACT", "OVERLAY", "SUBSTRING", "TRIM"};
constexpr std::array<std::string_view, 10> kPartLast{
    "CONVERT",  "DATETIME_DIFF",  "DATETIME_TRUNC",  "DATE_DIFF", "DATE_TRUNC",
    "LAST_DAY", "TIMESTAMP_DIFF", "TIMESTAMP_TRUNC", "TIME_DIFF", "TIME_TRUNC"};
constexpr std::array<std::string_view, 59> kDateParts{
    "CENTURY",    "D",           "DAY",     "DAYOFWEEK",   "DAYOFYEAR",    "DAYS",        "DD",
    "DECADE",     "DOW",         "DOY",     "DW",          "DY",           "EPOCH",       "HH",
    "HOUR",       "HOURS",       "ISOWEEK", "ISOWK",       "ISOWW",        "ISOYEAR",     "ISO_WEEK",
    "M",          "MCS",         "MI",      "MICROSECOND", "MICROSECONDS", "MILLISECOND", "MILLISECONDS",
    "MINUTE",     "MINUTES",     "MM",      "MONTH",       "MONTHS",       "MS",          "N",
    "NANOSECOND", "NANOSECONDS", "NS",      "Q",           "QQ",           "QUARTER",     "QUARTERS",
    "S",          "SECOND",      "SECONDS", "SS",          "TZ",           "TZOFFSET",    "W",
    "WEEK",       "WEEKDAY",     "WEEKS",   "WK",          "WW",           "Y",           "YEAR",
    "YEARS",      "YY",          "YYYY"};
constexpr std::array<std::string_view, 49> kTypeWords{
    "BIGINT",      "BINARY",        "BIT",       "BOOL",
    "BOOLEAN",     "BYTEA",         "CHAR",      "CHARACTER",
    "DATE",        "DATETIME",      "DATETIME2", "DATETIMEOFFSET",
    "DECIMAL",     "DOUBLE",        "FLOAT",     "FLOAT64",
    "GEOGRAPHY",   "GEOMETRY",      "IMAGE",     "INT",
    "INT64",       "INTEGER",       "JSON",      "LONG",
    "MONEY",       "NCHAR",         "NTEXT",     "NUMBER",
    "NUMERIC",     "NVARCHAR",      "REAL",      "ROWVERSION",
    "SIGNED",      "SMALLDATETIME", "SMALLINT",  "SMALLMONEY",
    "SQL_VARIANT", "STRING",        "SYSNAME",   "TEXT",
    "TIME",        "TIMESTAMP",     "TINYINT",   "UNIQUEIDENTIFIER",
    "UNSIGNED",    "VARBINARY",     "VARCHAR",   "VARCHAR2",
    "XML"};
constexpr std::array<std::string_view, 4> kTypeTails{"PRECISION", "UNSIGNED", "VARYING", "ZONE"};
constexpr std::array<std::string_view, 6> kArgumentWords{"DEFAULT", "FORMAT",    "PASSING",
                                                         "PLACING", "SEPARATOR", "VALUE"};
constexpr std::array<std::string_view, 4> kForeignFunctions{"JSON_TABLE", "OPENDATASOURCE", "OPENROWSET",
                                                            "XMLTABLE"};
constexpr std::array<std::string_view, 21> kTableHints{"FASTFIRSTROW",
                                                       "FORCESCAN",
                                                       "FORCESEEK",
                                                       "HOLDLOCK",
                                                       "INDEX",
                                                       "NOEXPAND",
                                                       "NOLOCK",
                                                       "NOWAIT",
                                                       "PAGLOCK",
                                                       "READCOMMITTED",
                                                       "READCOMMITTEDLOCK",
                                                       "READPAST",
                                                       "READUNCOMMITTED",
                                                       "REPEATABLEREAD",
                                                       "ROWLOCK",
                                                       "SERIALIZABLE",
                                                       "SNAPSHOT",
                                                       "TABLOCK",
                                                       "TABLOCKX",
                                                       "UPDLOCK",
                                                       "XLOCK"};

constexpr std::string_view wordOf(std::string_view word) noexcept {
  return word;
}
constexpr std::string_view wordOf(const Entry& entry) noexcept {
  return entry.word;
}

template <class List> constexpr bool isSorted(const List& list) noexcept {
  return std::is_sorted(list.begin(), list.end(),
                        [](const auto& a, const auto& b) { return wordOf(a) < wordOf(b); });
}
static_assert(isSorted(kSigns) && isSorted(kWindowWords) && isSorted(kValueMethods) &&
              isSorted(kTypesOfMethods) && isSorted(kFromFunctions) && isSorted(kPartLast) &&
              isSorted(kDateParts) && isSorted(kTypeWords) && isSorted(kTypeTails) &&
              isSorted(kArgumentWords) && isSorted(kForeignFunctions) && isSorted(kTableHints));

/// The row of a word, or null.
template <class List> auto find(const List& list, std::string_view text) noexcept -> decltype(list.data()) {
  const auto* row = std::lower_bound(list.begin(), list.end(), text, [](const auto& entry, auto sought) {
    return compareWords(sought, wordOf(entry)) > 0;
  });
  return row != list.end() && compareWords(text, wordOf(*row)) == 0 ? row : nullptr;
}

}  // namespace

QuerySign signOfWord(std::string_view text) noexcept {
  const Entry* entry = find(kSigns, text);
  return entry ? entry->sign : QuerySign::name;
}

std::string nameKey(std::string_view name) {
  return foldCase(unquotedPart(name));
}

bool isWindowWord(std::string_view text) noexcept {
  return find(kWindowWords, text) != nullptr;
}

bool isValueMethod(std::string_view text) noexcept {
  return find(kValueMethods, text) != nullptr;
}

bool isTypeOfMethods(std::string_view text) noexcept {
  return find(kTypesOfMethods, text) != nullptr;
}

bool isFromFunction(std::string_view text) noexcept {
  return find(kFromFunctions, text) != nullptr;
}

bool takesPartLast(std::string_view function) noexcept {
  return find(kPartLast, function) != nullptr;
}

bool isDatePart(std::string_view text) noexcept {
  return find(kDateParts, text) != nullptr;
}

bool isTypeWord(std::string_view text) noexcept {
  return find(kTypeWords, text) != nullptr;
}

bool isTypeTail(std::string_view text) noexcept {
  return find(kTypeTails, text) != nullptr;
}

bool isArgumentWord(std::string_view text) noexcept {
  return find(kArgumentWords, text) != nullptr;
}

bool isTableHint(std::string_view text) noexcept {
  return find(kTableHints, text) != nullptr;
}

bool isForeignFunction(std::string_view text) noexcept {
  return find(kForeignFunctions, text) != nullptr;
}

}  // namespace tav
