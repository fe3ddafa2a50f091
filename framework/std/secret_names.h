#pragma once

// Names of values that are secret.

#include <cstddef>
#include <string_view>

namespace tav {

/// No name of a secret is longer, hyphens and underscores included.
constexpr std::size_t kLongestSecretName = 32;

/// Whether a value of this name is a secret wherever it stands: "Password", "api_key", "x-api-key". Letter
/// case, hyphens and underscores make no difference.
bool isSecretName(std::string_view name);

/// Whether it is one in the query of a URL, where the short names "sig", "key" and "code" are keys, which
/// mean other things elsewhere.
bool isSecretQueryName(std::string_view name);

}  // namespace tav
