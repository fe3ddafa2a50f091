#pragma once

#include <span>
#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// "; did you mean 'coverage'?" for an error about a word that is none of those that would do; empty where
/// none of them comes near. They are few, and all are looked at; many names are a matter of Spellings. Letter
/// case and hyphens in front make no difference. Of words that are as near as each other, the one of most
/// nearly the same length is offered: swapped letters are the most common slip.
TAV_API std::string offerNearest(std::string_view word, std::span<const std::string_view> words);

}  // namespace tav
