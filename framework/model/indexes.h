#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "framework/model/name_index.h"
#include "framework/model/place_index.h"

namespace tav {

/// What a large collection keeps beside its slots, each part from the first question that needs it.
struct Indexes {
  std::unique_ptr<NameIndex> names;
  std::unique_ptr<UniqueNumbers> numbers;
  std::unique_ptr<std::unordered_map<const TAVObject*, std::uint32_t>> members;  // object to how often
  std::vector<PlaceIndex> places;  // one a class that was asked for, of which there are few
};

}  // namespace tav
