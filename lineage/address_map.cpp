#include "lineage/address_map.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "framework/std/printable.h"
#include "framework/std/spellings.h"
#include "framework/std/text.h"
#include "framework/std/utf8.h"
#include "lineage/server_location.h"
#include "messages/message.h"

namespace tav {
namespace {

constexpr std::array<std::string_view, 3> kWords{"server", "database", "schema"};
constexpr std::string_view kArrow = "->";
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kUnknownServer = "connection://";

std::u32string charactersOf(std::string_view text) {
  std::u32string characters;
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    characters += length == 0 ? U'\uFFFD' : utf8Character(text, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return characters;
}

/// What each `*` of a pattern stands for.
using Captures = std::vector<std::u32string>;

/// What a folded pattern has to say of a text; null where it is not the whole of it. Only the last `*` ever
/// has to take more, so that a text costs its length times that of the pattern at most.
std::optional<Captures> match(std::u32string_view pattern, std::string_view whole) {
  const std::u32string text = charactersOf(foldedName(whole));
  std::vector<std::pair<std::size_t, std::size_t>> stars;  // where each begins and ends in the text
  std::size_t at = 0;
  std::size_t behindStar = 0;
  for (std::size_t i = 0; i < text.size() || at < pattern.size();) {
    if (at < pattern.size() && pattern[at] == U'*') {
      stars.emplace_back(i, i);
      behindStar = ++at;
    } else if (at < pattern.size() && i < text.size() && pattern[at] == text[i]) {
      ++at;
      ++i;
    } else if (!stars.empty() && stars.back().second < text.size()) {
      i = ++stars.back().second;
      at = behindStar;
    } else {
      return std::nullopt;
    }
  }
  const std::u32string shown = charactersOf(whole);  // folding keeps the number of characters
  Captures captures;
  for (const auto& [begin, end] : stars) captures.push_back(shown.substr(begin, end - begin));
  return captures;
}

std::string filled(std::u32string_view text, const Captures& captures) {
  std::string result;
  std::size_t star = 0;
  for (const char32_t c : text) {
    if (c != U'*') {
      appendUtf8(result, c);
      continue;
    }
    for (const char32_t captured : captures[star]) appendUtf8(result, captured);
    ++star;
  }
  return result;
}

std::string_view schemeOf(std::string_view server) {
  return server.substr(0, server.find(kSchemeEnd));
}

/// The texts by which a rule may mean a server: its URI, what stands behind the scheme, and that without the
/// port where that is the usual one of its kind.
std::vector<std::string> namesOf(const std::string& server) {
  std::vector<std::string> names{server};
  const std::size_t end = server.find(kSchemeEnd);
  if (end == server.npos) return names;
  names.push_back(server.substr(end + kSchemeEnd.size()));
  const ServerKind* kind = serverKindOfScheme(schemeOf(server));
  if (!kind || kind->port.empty()) return names;
  const std::string& place = names.back();
  const std::size_t slash = std::min(place.find('/'), place.size());
  const std::string port = ":" + std::string(kind->port);
  if (std::string_view(place).substr(0, slash).ends_with(port))
    names.push_back(place.substr(0, slash - port.size()) + place.substr(slash));
  return names;
}

/// A table is called as servers of the new kind have it.
void moveTo(DatabaseAddress& address, std::string server) {
  const std::string_view scheme = schemeOf(server);
  const ServerKind* kind = scheme == schemeOf(address.server) ? nullptr : serverKindOfScheme(scheme);
  if (kind) address.naming = kind->naming;
  address.named = !server.starts_with(kUnknownServer);
  address.server = std::move(server);
}

}  // namespace

class AddressRuleReader {
 public:
  AddressRuleReader(std::string_view line, std::string_view file, std::size_t number)
      : rest_(line), file_(file), number_(number) {}

  AddressMap::Rule read() {
    const std::array<AddressMap::Side*, 3> left{&rule_.server, &rule_.database, &rule_.schema};
    const std::array<AddressMap::Side*, 3> right{&rule_.newServer, &rule_.newDatabase, &rule_.newSchema};
    while (!rest_.empty() && !rest_.starts_with(kArrow)) readWord(left, true);
    if (rest_.empty()) failWith("expected -> and what the names become");
    rest_.remove_prefix(kArrow.size());
    skipBlanks();
    while (!rest_.empty()) readWord(right, false);
    check(left, right);
    return std::move(rule_);
  }

 private:
  void readWord(std::span<AddressMap::Side* const> sides, bool isLeft) {
    const std::size_t end = rest_.find_first_of("= \t");
    const std::string_view word = rest_.substr(0, end);
    const auto* const known = std::find(kWords.begin(), kWords.end(), word);
    if (known == kWords.end()) failUnknown(word);
    if (end == rest_.npos || rest_[end] != '=') failWith("expected = behind '" + std::string(word) + "'");
    AddressMap::Side& side = *sides[static_cast<std::size_t>(known - kWords.begin())];
    if (side.given) failWith("'" + std::string(word) + "' is given twice on one side of ->");
    rest_.remove_prefix(end + 1);
    side.given = true;
    std::string value = readValue();
    if (isLeft) value = foldedName(word == kWords[0] ? serverName(value) : value);
    side.text = charactersOf(value);
    skipBlanks();
  }

  std::string readValue() {
    if (!rest_.starts_with('"')) {
      std::string value(rest_.substr(0, rest_.find_first_of(kBlanks)));
      rest_.remove_prefix(value.size());
      return value;
    }
    std::string value;
    for (std::size_t i = 1; i < rest_.size(); ++i) {
      if (rest_[i] != '"') {
        value += rest_[i];
      } else if (i + 1 < rest_.size() && rest_[i + 1] == '"') {
        value += rest_[i++];
      } else {
        rest_.remove_prefix(i + 1);
        return value;
      }
    }
    failWith("the quote is not closed");
  }

  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size())); }

  void check(std::span<AddressMap::Side* const> left, std::span<AddressMap::Side* const> right) {
    const auto isGiven = [](const AddressMap::Side* side) { return side->given; };
    if (std::none_of(left.begin(), left.end(), isGiven)) failWith("nothing stands before ->");
    if (std::none_of(right.begin(), right.end(), isGiven)) failWith("nothing stands behind ->");
    for (std::size_t i = 0; i < kWords.size(); ++i) {
      const auto stars = [](const std::u32string& text) {
        return std::count(text.begin(), text.end(), U'*');
      };
      if (stars(right[i]->text) > stars(left[i]->text))
        failWith("a * of the new " + std::string(kWords[i]) + " stands for none of the old one");
    }
    const std::u32string& server = rule_.newServer.text;
    if (rule_.newServer.given && server.find(U"://") == server.npos && server != U"file" &&
        server != U"bigquery")
      failWith("the new server is no URI, such as mssql://warehouse.example:1433");
  }

  [[noreturn]] void failUnknown(std::string_view word) const {
    Spellings spellings;
    for (const std::string_view known : kWords) spellings.add(known);
    const std::string_view nearest = spellings.nearest(word);
    failWith("expected server=, database=, schema= or ->, not '" + printable(word) + "'" +
             (nearest.empty() ? std::string() : "; the nearest is " + std::string(nearest)));
  }

  [[noreturn]] void failWith(const std::string& cause) const {
    fail(Message::badMapRule, {file_, std::to_string(number_), cause});
  }

  std::string_view rest_;
  std::string_view file_;
  std::size_t number_;
  AddressMap::Rule rule_;
};

AddressMap AddressMap::parse(std::string_view text, std::string_view file) {
  AddressMap map;
  map.text_ = text;
  std::size_t number = 0;
  for (const std::string_view whole : linesOf(text)) {
    ++number;
    const std::string_view line = trimmed(whole);
    if (!line.empty() && !line.starts_with('#'))
      map.rules_.push_back(AddressRuleReader(line, file, number).read());
  }
  return map;
}

void AddressMap::apply(DatabaseAddress& address, std::string& schema) const {
  if (empty()) return;
  const std::vector<std::string> servers = namesOf(address.server);
  for (const Rule& rule : rules_) {
    const std::optional<Captures> server = matchOneOf(rule.server, servers);
    const std::optional<Captures> database = matchOneOf(rule.database, {&address.database, 1});
    const std::optional<Captures> oldSchema = matchOneOf(rule.schema, {&schema, 1});
    if (!server || !database || !oldSchema) continue;
    if (rule.newServer.given) moveTo(address, filled(rule.newServer.text, *server));
    if (rule.newDatabase.given) address.database = filled(rule.newDatabase.text, *database);
    // Where schemas are databases, there is none beside the database.
    if (address.naming == TableNaming::databaseTable) schema.clear();
    if (rule.newSchema.given) schema = filled(rule.newSchema.text, *oldSchema);
    return;
  }
}

/// What is not given fits all.
std::optional<std::vector<std::u32string>> AddressMap::matchOneOf(const Side& side,
                                                                  std::span<const std::string> texts) {
  if (!side.given) return Captures();
  for (const std::string& text : texts)
    if (std::optional<Captures> captures = match(side.text, text)) return captures;
  return std::nullopt;
}

}  // namespace tav
