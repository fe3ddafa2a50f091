#pragma once

// What a large collection knows of names: where the objects of a name are, and which numbers its unique names
// have taken.

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/model/slot.h"
#include "framework/std/string.h"

namespace tav {

/// Finds slots by the hash of their object's name. It holds no text: whoever asks compares the live
/// object's name, so nothing in here can dangle. Slots of one hash form a chain in insertion order through
/// Slot::nextSameHash; holes stay in their chain until they are passed. An object that is renamed stays in
/// the chain of its first name, where nobody finds it any more, and is found among those that moved.
class NameIndex {
 public:
  explicit NameIndex(std::span<Slot> slots);
  void append(std::span<Slot> slots, std::uint32_t slot);
  /// To be told before the object of a slot goes, and before it takes another name.
  void remove(std::span<const Slot> slots, std::uint32_t slot);
  void rename(std::span<const Slot> slots, std::uint32_t slot, std::string_view name);
  /// The first live slot whose object has the name and is of class `kind`, or null.
  TAVObject* find(std::span<Slot> slots, std::string_view name, ClassId kind);

 private:
  struct Chain {
    std::uint32_t hash = 0;
    std::uint32_t head = kNone;
    std::uint32_t tail = kNone;
  };
  [[nodiscard]] std::size_t placeOf(std::uint32_t hash) const noexcept;
  void grow();
  std::uint32_t findInChain(std::span<Slot> slots, std::uint32_t hash, std::string_view name, ClassId kind);
  [[nodiscard]] std::uint32_t findMoved(std::span<const Slot> slots, std::uint32_t hash,
                                        std::string_view name, ClassId kind) const;

  std::vector<Chain> table_;  // open addressing, its size a power of two
  std::size_t used_ = 0;
  std::set<std::pair<std::uint32_t, std::uint32_t>> moved_;  // hash and slot of what was renamed
};

/// The numbers given to equal names. For each stem (a name with its separator) all numbers from 2 up to
/// `next` are taken, but for those that were freed since.
class UniqueNumbers {
 public:
  struct Numbers {
    std::uint32_t next = 2;
    std::set<std::uint32_t> freed;
  };
  Numbers& of(std::string_view stem);
  /// Frees the number that `name` ends in, when it was one of ours.
  void release(std::string_view name) noexcept;

 private:
  std::unordered_map<std::string, Numbers, TextHash, std::equal_to<>> stems_;
};

}  // namespace tav
