#pragma once

#include <cstdint>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// Where something stands in a document; both count from 1, columns in characters.
struct DocumentPlace {
  std::uint64_t line = 1;
  std::uint64_t column = 1;
};

/// Throws the TAVException for a document that cannot be read at all.
[[noreturn]] TAV_API void failForDocument(std::string_view document, std::string_view cause);

/// Throws the TAVException for a document with a fault at this place.
[[noreturn]] void failAt(std::string_view document, DocumentPlace place, std::string_view cause);

}  // namespace tav
