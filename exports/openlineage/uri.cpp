#include "exports/openlineage/uri.h"

#include <algorithm>

namespace tav {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";
constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

bool holdsOnly(std::string_view text, std::string_view characters) {
  return text.find_first_not_of(characters) == text.npos;
}

bool isLetterOrDigit(char c) {
  return kLetters.find(c) != kLetters.npos || kDigits.find(c) != kDigits.npos;
}

bool isScheme(std::string_view text) {
  return !text.empty() && kLetters.find(text[0]) != kLetters.npos &&
         std::all_of(text.begin(), text.end(),
                     [](char c) { return isLetterOrDigit(c) || c == '+' || c == '-' || c == '.'; });
}

/// Whether the text is made of characters that mean nothing in a URI, of `more`, and of %XX.
bool isEncoded(std::string_view text, std::string_view more) {
  constexpr std::string_view kPlain = "-._~!$&'()*+,;=";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '%') {
      if (text.size() - i < 3 || !holdsOnly(text.substr(i + 1, 2), kHexDigits)) return false;
      i += 2;
    } else if (!isLetterOrDigit(c) && kPlain.find(c) == kPlain.npos && more.find(c) == more.npos) {
      return false;
    }
  }
  return true;
}

/// [user@]host[:port]
bool isAuthority(std::string_view text) {
  const std::size_t at = text.find('@');
  if (at != text.npos) {
    if (!isEncoded(text.substr(0, at), ":")) return false;
    text.remove_prefix(at + 1);
  }
  const bool inBrackets = text.starts_with('[');
  const std::size_t bracket = inBrackets ? text.find(']') : 0;
  if (bracket == text.npos) return false;
  const std::size_t colon = text.find(':', bracket);
  if (colon != text.npos && !holdsOnly(text.substr(colon + 1), kDigits)) return false;
  const std::string_view host = text.substr(0, colon);
  if (!inBrackets) return isEncoded(host, "");
  const std::string_view address = host.substr(1, bracket - 1);
  return bracket + 1 == host.size() && address.find(':') != address.npos &&
         std::all_of(address.begin(), address.end(),
                     [](char c) { return c == ':' || c == '.' || kHexDigits.find(c) != kHexDigits.npos; });
}

}  // namespace

bool isUri(std::string_view text) noexcept {
  const std::size_t colon = text.find(':');
  if (colon == text.npos || !isScheme(text.substr(0, colon))) return false;
  text.remove_prefix(colon + 1);
  const std::size_t hash = text.find('#');
  if (hash != text.npos && !isEncoded(text.substr(hash + 1), ":@/?")) return false;
  text = text.substr(0, hash);
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    const std::size_t end = std::min(text.find_first_of("/?"), text.size());
    if (!isAuthority(text.substr(0, end))) return false;
    text.remove_prefix(end);
  }
  return isEncoded(text, ":@/?");
}

}  // namespace tav
