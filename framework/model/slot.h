#pragma once

// What a link end is made of. Nothing here knows what an object is: link.cpp fills slots, look_up.cpp and
// end_walk.h read them.

#include <cstdint>

#include "framework/api.h"
#include "framework/model/class_list.h"

namespace tav {

inline constexpr std::uint32_t kNone = 0xFFFFFFFF;

/// What a link end means for saving, walking, copying and deleting.
enum class LinkKind : std::uint8_t {
  contained,  ///< this end owns the other and deletes it
  container,  ///< the other side of `contained`
  reference,  ///< saved and exported
  hidden,     ///< the back link of a reference: kept for deletion and queries, never saved
};

struct Slot {
  TAVObject* other = nullptr;          ///< null: a hole that a removed link has left
  std::uint32_t peer = kNone;          ///< the slot that `other` keeps for the same link
  std::uint32_t nextSameHash = kNone;  ///< chain of the name index
};

}  // namespace tav
