#pragma once

// Where the ends of links lie. For the sources of this folder alone.

#include <span>

#include "framework/model/class_info.h"
#include "framework/model/collection.h"
#include "framework/model/object.h"

namespace tav {

/// Every link row by its number, and the number of its opposite. Both are made while compiling, so that links
/// can be looked up before main() begins.
extern const std::span<const LinkRow> kLinkRows;
extern const std::span<const std::uint8_t> kOppositeRows;

/// Up to so many slots a walk is cheaper than an index.
inline constexpr std::size_t kSmall = 8;

/// The only code that reaches into ends and collections.
struct LinkAccess {
  static OneBase& one(std::uint8_t row, TAVObject& object) { return kLinkRows[row].one(object); }
  static std::unique_ptr<ManyData>& many(std::uint8_t row, TAVObject& object) {
    return data(kLinkRows[row].many(object));
  }
  static std::unique_ptr<ManyData>& data(TAVSdkCollection& collection) { return collection.data_; }
  static const ManyData* data(const TAVSdkCollection& collection) { return collection.data_.get(); }
  static Slot& slot(OneBase& end) { return end.slot_; }

  static Slot& slot(std::uint8_t row, TAVObject& object, std::uint32_t place) {
    return kLinkRows[row].isMany() ? many(row, object)->slots[place] : one(row, object).slot_;
  }
  static bool& doomed(TAVObject& object) { return object.doomed_; }
};

}  // namespace tav
