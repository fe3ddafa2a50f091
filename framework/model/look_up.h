#pragma once

#include <string_view>

#include "framework/model/link_access.h"

namespace tav {

struct Indexes;

/// The indexes of a collection, made empty when it has none yet.
Indexes& indexesOf(ManyData& data);
/// The first object of exactly this name that is of class `kind` or a subclass, or null.
TAVObject* findByName(ManyData& data, std::string_view name, ClassId kind);

}  // namespace tav
