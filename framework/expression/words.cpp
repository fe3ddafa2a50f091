#include "framework/expression/words.h"

#include <algorithm>
#include <array>

#include "framework/std/string.h"

namespace tav {

namespace {

// All sorted.
constexpr std::array<std::string_view, 22> kFlags{"AFTER",
                                                  "ALL",
                                                  "ASC",
                                                  "BASC",
                                                  "BDESC",
                                                  "BEFORE",
                                                  "BEFORE_AND_AFTER",
                                                  "CONSTRAINED",
                                                  "DESC",
                                                  "EXCLUDEEMPTY",
                                                  "INCLUDEEMPTY",
                                                  "LEAVES",
                                                  "NUMERIC",
                                                  "POST",
                                                  "RECURSIVE",
                                                  "SELF",
                                                  "SELF_AND_AFTER",
                                                  "SELF_AND_BEFORE",
                                                  "SELF_BEFORE_AFTER",
                                                  "STRING",
                                                  "TYPED",
                                                  "UNORDERED"};
constexpr std::array<std::string_view, 9> kWordFirst{"CONVERT",      "DATEADD",     "DATEDIFF",
                                                     "DATEDIFF_BIG", "DATENAME",    "DATEPART",
                                                     "DATETRUNC",    "DATE_BUCKET", "TRY_CONVERT"};

constexpr std::array<std::string_view, 37> kMemberWords{"ALLMEMBERS",
                                                        "CAPTION",
                                                        "CHILDREN",
                                                        "COUNT",
                                                        "CURRENT",
                                                        "CURRENTMEMBER",
                                                        "CURRENTORDINAL",
                                                        "DATAMEMBER",
                                                        "DEFAULTMEMBER",
                                                        "DIMENSION",
                                                        "DIMENSIONS",
                                                        "FIRSTCHILD",
                                                        "FIRSTSIBLING",
                                                        "HIERARCHY",
                                                        "ID",
                                                        "KEY",
                                                        "LASTCHILD",
                                                        "LASTSIBLING",
                                                        "LEVEL",
                                                        "LEVELS",
                                                        "LEVEL_NUMBER",
                                                        "MEMBERS",
                                                        "MEMBERVALUE",
                                                        "MEMBER_CAPTION",
                                                        "MEMBER_KEY",
                                                        "MEMBER_NAME",
                                                        "MEMBER_UNIQUE_NAME",
                                                        "MEMBER_VALUE",
                                                        "NAME",
                                                        "NEXTMEMBER",
                                                        "ORDINAL",
                                                        "PARENT",
                                                        "PREVMEMBER",
                                                        "SIBLINGS",
                                                        "UNIQUENAME",
                                                        "UNKNOWNMEMBER",
                                                        "VALUE"};

struct SqlOperator {
  std::string_view word;
  Op op;
  Op negated;
};
constexpr std::array kSqlOperators{SqlOperator{"IN", Op::in, Op::notIn},
                                   SqlOperator{"LIKE", Op::like, Op::notLike},
                                   SqlOperator{"BETWEEN", Op::between, Op::notBetween},
                                   SqlOperator{"ESCAPE", Op::escape, Op::none},
                                   SqlOperator{"COLLATE", Op::collate, Op::none},
                                   SqlOperator{"OVER", Op::over, Op::none}};

template <std::size_t Size>
bool contains(const std::array<std::string_view, Size>& sorted, std::string_view text) noexcept {
  const auto* place = std::lower_bound(sorted.begin(), sorted.end(), text,
                                       [](auto word, auto sought) { return compareWords(sought, word) > 0; });
  return place != sorted.end() && compareWords(text, *place) == 0;
}

}  // namespace

int compareWords(std::string_view text, std::string_view upper) noexcept {
  for (std::size_t i = 0; i < std::min(text.size(), upper.size()); ++i) {
    const char c = text[i] >= 'a' && text[i] <= 'z' ? static_cast<char>(text[i] - 'a' + 'A') : text[i];
    if (c != upper[i]) return c < upper[i] ? -1 : 1;
  }
  return text.size() == upper.size() ? 0 : text.size() < upper.size() ? -1 : 1;
}

bool isWord(std::string_view text, std::string_view upper) noexcept {
  return text.size() == upper.size() && compareWords(text, upper) == 0;
}

bool isFlagWord(std::string_view text) noexcept {
  return contains(kFlags, text);
}

bool takesWordFirst(std::string_view function) noexcept {
  return contains(kWordFirst, function);
}

bool isEscapeWord(std::string_view text, char following) noexcept {
  if (isWord(text, "FN")) return foldCase(following) >= 'a' && foldCase(following) <= 'z';
  return following == '\'' && (isWord(text, "D") || isWord(text, "T") || isWord(text, "TS"));
}

bool isMemberWord(std::string_view text) noexcept {
  return contains(kMemberWords, text);
}

Op sqlOperatorOf(std::string_view text, bool negated) noexcept {
  for (const SqlOperator& entry : kSqlOperators)
    if (isWord(text, entry.word)) return negated ? entry.negated : entry.op;
  return Op::none;
}

}  // namespace tav
