#include "host/reports/mdx_names.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "framework/expression/lexer.h"
#include "framework/expression/words.h"
#include "framework/std/dotted_name.h"
#include "framework/std/string.h"

namespace host {
namespace {

using tav::Token;
using Name = std::vector<std::string>;

Name folded(const Name& name) {
  Name all;
  all.reserve(name.size());
  for (const std::string& part : name) all.push_back(tav::foldCase(part));
  return all;
}

bool isBareWord(const Token& token, std::string_view upper) {
  return token.bare && tav::isWord(token.text, upper);
}

/// What stands between the quotes of a text, doubled ones made single.
std::string unquoted(std::string_view text) {
  std::string inner;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    inner += text[i];
    if (text[i] == text.front()) ++i;
  }
  return inner;
}

/// The parts of a reference up to the first key, or the first word that asks something of what stands before
/// it.
Name partsOf(const Token& token) {
  std::string_view rest = token.kind == Token::Kind::call ? token.text.substr(0, token.lastPart) : token.text;
  Name parts;
  while (!rest.empty()) {
    const std::string_view part = rest.substr(0, tav::namePartLength(rest));
    const bool bare = part.front() != '[';
    if (part.front() == '&' || (bare && !parts.empty() && tav::isMemberWord(part))) break;
    parts.push_back(bare ? std::string(part) : tav::unquotedPart(part));
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
  }
  return parts;
}

/// Measures may be called by the cube that they are in, or by CURRENTCUBE.
void dropCube(Name& parts) {
  if (parts.size() > 2 && tav::foldCase(parts[1]) == "measures") parts.erase(parts.begin());
}

class NameReader {
 public:
  std::vector<Name> read(std::string_view query) {
    forEachToken(query, [&](const Token& token, const Token& last) {
      if (isDefinition(token, last))
        readDefinition(unquoted(token.text));
      else
        readName(token, last);
    });
    std::erase_if(names_, [&](const Name& name) { return own_.contains(folded(name)); });
    return std::move(names_);
  }

 private:
  template <class Visit> static void forEachToken(std::string_view text, const Visit& visit) {
    tav::PieceBuffer pieces;
    tav::Lexer lexer(text, tav::ExpressionLanguage::mdx, pieces);
    Token last;
    for (Token token = lexer.next(false); token.kind != Token::Kind::end; token = lexer.next(false)) {
      visit(token, last);
      last = token;
    }
  }

  void readDefinition(const std::string& text) {
    forEachToken(text, [&](const Token& token, const Token& last) { readName(token, last); });
  }

  /// The older way to define members and sets: AS '...'.
  static bool isDefinition(const Token& token, const Token& last) {
    return token.kind == Token::Kind::string && token.text.front() == '\'' && last.op == tav::Op::as;
  }

  void readName(const Token& token, const Token& last) {
    if (token.kind != Token::Kind::reference && token.kind != Token::Kind::call) return;
    if (last.kind == Token::Kind::dot) return;  // asks something of what stands before the dot
    Name parts = partsOf(token);
    dropCube(parts);
    if (isBareWord(last, "MEMBER")) own_.insert(folded(parts));
    if (parts.size() > 1) names_.push_back(std::move(parts));
  }

  std::vector<Name> names_;
  std::set<Name> own_;
};

bool isAxis(const Token& token) {
  constexpr std::array<std::string_view, 6> kAxes{"AXIS", "CHAPTERS", "COLUMNS", "PAGES", "ROWS", "SECTIONS"};
  if (token.kind == Token::Kind::number) return true;
  return token.parts == 1 && std::any_of(kAxes.begin(), kAxes.end(), [&](std::string_view axis) {
           return tav::isWord(token.text, axis);
         });
}

}  // namespace

bool isMdxQuery(std::string_view query) {
  tav::PieceBuffer pieces;
  tav::Lexer lexer(query, tav::ExpressionLanguage::mdx, pieces);
  Token last = lexer.next(false);
  if (!isBareWord(last, "SELECT") && !isBareWord(last, "WITH") && !isBareWord(last, "DRILLTHROUGH"))
    return false;
  for (Token token = lexer.next(false); token.kind != Token::Kind::end; token = lexer.next(false)) {
    if (isBareWord(last, "ON") && isAxis(token)) return true;
    last = token;
  }
  return false;
}

std::vector<std::vector<std::string>> mdxNames(std::string_view query) {
  return NameReader().read(query);
}

}  // namespace host
