#include "framework/details/setting_words.h"

namespace tav {
namespace {

bool isUpper(char c) noexcept {
  return c >= 'A' && c <= 'Z';
}

bool isLower(char c) noexcept {
  return c >= 'a' && c <= 'z';
}

/// A place in a name, and what stands around it.
class NamePlace {
 public:
  NamePlace(std::string_view name, std::size_t place) : name_(name), place_(place) {}

  /// Whether a word begins here: "nullProcessing", and behind an abbreviation "MDXScript".
  [[nodiscard]] bool beginsWord() const noexcept {
    if (!isUpper(at(0)) || place_ == 0) return false;
    return isLower(before()) || (isUpper(before()) && isLower(at(1)) && !isPlural());
  }
  /// Whether the capital here is one of an abbreviation, which keeps it.
  [[nodiscard]] bool isAbbreviated() const noexcept {
    return isUpper(at(1)) || (place_ > 0 && isUpper(before()) && !isLower(at(1))) || isPlural();
  }

 private:
  [[nodiscard]] char at(std::size_t offset) const noexcept {
    return place_ + offset < name_.size() ? name_[place_ + offset] : '\0';
  }
  [[nodiscard]] char before() const noexcept { return name_[place_ - 1]; }
  /// "IDs" is no "I Ds".
  [[nodiscard]] bool isPlural() const noexcept {
    return place_ > 0 && isUpper(before()) && at(1) == 's' && !isLower(at(2));
  }

  std::string_view name_;
  std::size_t place_;
};

}  // namespace

std::string settingWords(std::string_view name) {
  std::string words;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const NamePlace place(name, i);
    if (name[i] == '.') {
      words += ", ";
      continue;
    }
    if (place.beginsWord()) words += ' ';
    const bool lowered = isUpper(name[i]) && !place.isAbbreviated();
    words += lowered ? static_cast<char>(name[i] - 'A' + 'a') : name[i];
  }
  return words;
}

}  // namespace tav
