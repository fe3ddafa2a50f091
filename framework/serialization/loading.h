#pragma once

// What the readers of a saved document's contents share.

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "framework/model/object.h"
#include "framework/std/exception.h"

namespace tav {

/// The objects of a saved model by their ids.
using LoadedObjects = std::unordered_map<std::uint32_t, TAVObject*>;

[[noreturn]] inline void failToLoad(std::string_view place, std::string_view cause) {
  fail("TAVXML_F0002", std::string(place) + ": " + std::string(cause));
}

template <class Number> bool parseNumber(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace tav
