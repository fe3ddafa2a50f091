#include "framework/types/type_names.h"

#include <algorithm>

bool tav::isTypeName(std::string_view name) noexcept {
  return std::find(kTypeNames.begin(), kTypeNames.end(), name) != kTypeNames.end();
}

TAVString getDefaultLogicalName(const TAVString& typeName) {
  return typeName;
}
