#include "framework/expression/query_words.h"

#include <algorithm>
#include <array>

#include "framework/expression/words.h"

namespace tav {

namespace {

struct Entry {
  std::string_view text;
  QueryWord word;
};

constexpr std::array kWords{Entry{"SELECT", QueryWord::select},     Entry{"WITH", QueryWord::with},
                            Entry{"FROM", QueryWord::from},         Entry{"WHERE", QueryWord::where},
                            Entry{"HAVING", QueryWord::having},     Entry{"ON", QueryWord::on},
                            Entry{"GROUP", QueryWord::group},       Entry{"ORDER", QueryWord::order},
                            Entry{"UNION", QueryWord::unite},       Entry{"INTERSECT", QueryWord::unite},
                            Entry{"EXCEPT", QueryWord::except},     Entry{"INTO", QueryWord::into},
                            Entry{"JOIN", QueryWord::join},         Entry{"APPLY", QueryWord::join},
                            Entry{"INNER", QueryWord::joinKind},    Entry{"CROSS", QueryWord::joinKind},
                            Entry{"OUTER", QueryWord::joinKind},    Entry{"FULL", QueryWord::joinKind},
                            Entry{"HASH", QueryWord::joinKind},     Entry{"LOOP", QueryWord::joinKind},
                            Entry{"MERGE", QueryWord::joinKind},    Entry{"REMOTE", QueryWord::joinKind},
                            Entry{"LEFT", QueryWord::side},         Entry{"RIGHT", QueryWord::side},
                            Entry{"PIVOT", QueryWord::pivot},       Entry{"UNPIVOT", QueryWord::pivot},
                            Entry{"TABLESAMPLE", QueryWord::hint},  Entry{"FOR", QueryWord::tail},
                            Entry{"OPTION", QueryWord::tail},       Entry{"OVER", QueryWord::over},
                            Entry{"WITHIN", QueryWord::over},       Entry{"COLLATE", QueryWord::collate},
                            Entry{"EXISTS", QueryWord::exists},     Entry{"VALUES", QueryWord::values},
                            Entry{"IN", QueryWord::operation},      Entry{"LIKE", QueryWord::operation},
                            Entry{"BETWEEN", QueryWord::operation}, Entry{"ESCAPE", QueryWord::operation},
                            Entry{"ALL", QueryWord::operation},     Entry{"ANY", QueryWord::operation},
                            Entry{"SOME", QueryWord::operation},    Entry{"BY", QueryWord::operation},
                            Entry{"ASC", QueryWord::direction},     Entry{"DESC", QueryWord::direction}};

constexpr std::array<std::string_view, 12> kWindowWords{"PARTITION", "BY",        "ORDER",   "ASC",
                                                        "DESC",      "ROWS",      "RANGE",   "UNBOUNDED",
                                                        "PRECEDING", "FOLLOWING", "CURRENT", "ROW"};
constexpr std::array<std::string_view, 5> kValueMethods{"VALUE", "QUERY", "EXIST", "NODES", "TOSTRING"};
constexpr std::array<std::string_view, 4> kFromFunctions{"TRIM", "EXTRACT", "SUBSTRING", "OVERLAY"};
constexpr std::array<std::string_view, 21> kTableHints{
    "NOLOCK",         "READUNCOMMITTED", "READCOMMITTED", "READCOMMITTEDLOCK", "READPAST",
    "REPEATABLEREAD", "ROWLOCK",         "PAGLOCK",       "TABLOCK",           "TABLOCKX",
    "UPDLOCK",        "XLOCK",           "HOLDLOCK",      "SERIALIZABLE",      "SNAPSHOT",
    "NOWAIT",         "NOEXPAND",        "FORCESEEK",     "FORCESCAN",         "INDEX",
    "FASTFIRSTROW"};

template <std::size_t Size>
bool contains(const std::array<std::string_view, Size>& words, std::string_view text) noexcept {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return isWord(text, word); });
}

}  // namespace

QueryWord queryWordOf(std::string_view text) noexcept {
  for (const Entry& entry : kWords)
    if (isWord(text, entry.text)) return entry.word;
  return QueryWord::none;
}

bool isWindowWord(std::string_view text) noexcept {
  return contains(kWindowWords, text);
}

bool isValueMethod(std::string_view text) noexcept {
  return contains(kValueMethods, text);
}

bool isFromFunction(std::string_view text) noexcept {
  return contains(kFromFunctions, text);
}

bool isTableHint(std::string_view text) noexcept {
  return contains(kTableHints, text);
}

}  // namespace tav
