#include "framework/std/option.h"

#include <algorithm>

namespace {

template <class Options> auto* find(Options& options, std::string_view key) noexcept {
  const auto found =
      std::find_if(options.begin(), options.end(), [key](const TAVOption& o) { return o.getKey() == key; });
  return found == options.end() ? nullptr : &*found;
}

}  // namespace

TAVOption::TAVOption(TAVString key, TAVString name, TAVString description, OptionType type,
                     TAVString defaultValue)
    : key_(std::move(key)),
      name_(std::move(name)),
      description_(std::move(description)),
      type_(type),
      defaultValue_(std::move(defaultValue)),
      value_(defaultValue_) {}

TAVOption* TAVOptionList::get(std::string_view key) noexcept {
  return find(*this, key);
}

const TAVOption* TAVOptionList::get(std::string_view key) const noexcept {
  return find(*this, key);
}
