#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace tav {

/// The name of an element or attribute; a document holds each one once.
struct DomName {
  std::string_view written;  ///< as in the document, with its prefix
  std::string_view local;    ///< without its prefix
  std::string_view space;    ///< the namespace that its prefix stands for; empty when it stands for none
  std::uint32_t hash;        ///< of `written`
};

/// The hash that a name keeps of its text.
inline std::uint32_t hashName(std::string_view text) noexcept {
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
}

}  // namespace tav
