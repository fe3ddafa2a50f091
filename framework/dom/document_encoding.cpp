#include "framework/dom/document_encoding.h"

#include <algorithm>
#include <array>
#include <string>

#include "framework/std/string.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kLongestDeclaration = 1024;

/// What the declaration says, as it is written; empty when it says nothing.
std::string_view declaredEncoding(std::string_view beginning) {
  if (!beginning.starts_with("<?xml")) return {};
  const std::string_view declaration = beginning.substr(0, kLongestDeclaration);
  std::string_view rest = declaration.substr(0, declaration.find("?>"));
  constexpr std::string_view kName = "encoding";
  const std::size_t name = rest.find(kName);
  if (name == rest.npos) return {};
  rest.remove_prefix(name + kName.size());
  const std::size_t quote = rest.find_first_not_of(kBlanks, std::min(rest.find('='), rest.size() - 1) + 1);
  if (quote == rest.npos) return {};
  const std::size_t end = rest.find(rest[quote], quote + 1);
  return end == rest.npos ? std::string_view() : rest.substr(quote + 1, end - quote - 1);
}

/// Whether the name is one of an encoding of all of Unicode, in whatever spelling: UTF-16, utf16LE,
/// ISO-10646-UCS-2.
bool isOfUnicode(std::string_view name) {
  std::string plain = foldCase(name);
  plain.erase(std::remove_if(plain.begin(), plain.end(), [](char c) { return c == '-' || c == '_'; }),
              plain.end());
  if (plain.ends_with("le") || plain.ends_with("be")) plain.resize(plain.size() - 2);
  constexpr std::array<std::string_view, 8> kEncodings{"utf8", "utf16",        "utf32",        "ucs2",
                                                       "ucs4", "iso10646ucs2", "iso10646ucs4", "unicode"};
  return std::find(kEncodings.begin(), kEncodings.end(), plain) != kEncodings.end();
}

}  // namespace

const char* encodingInSpiteOf(std::string_view beginning) {
  using namespace std::string_view_literals;
  if (beginning.starts_with("\xEF\xBB\xBF")) return "UTF-8";
  if (beginning.starts_with("\xFF\xFE") || beginning.starts_with("<\0"sv)) return "UTF-16LE";
  if (beginning.starts_with("\xFE\xFF") || beginning.starts_with("\0<"sv)) return "UTF-16BE";
  return isOfUnicode(declaredEncoding(beginning)) ? "UTF-8" : nullptr;
}

}  // namespace tav
