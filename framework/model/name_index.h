#pragma once

// What a large collection keeps beside its slots: the index by name, the numbers of unique names, and the
// index by object.

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/model/collection.h"
#include "framework/std/string.h"

namespace tav {

/// Finds slots by the hash of their object's name. It holds no text: whoever asks compares the live
/// object's name, so nothing in here can dangle. Slots of one hash form a chain in insertion order through
/// Slot::nextSameHash; holes stay in their chain until they are passed.
class NameIndex {
 public:
  explicit NameIndex(std::vector<Slot>& slots);
  void append(std::vector<Slot>& slots, std::uint32_t slot);
  /// The first live slot of this name's chain whose object has the name and is of class `kind`, or null.
  TAVObject* find(std::vector<Slot>& slots, std::string_view name, ClassId kind);

 private:
  struct Chain {
    std::uint32_t hash = 0;
    std::uint32_t head = kNone;
    std::uint32_t tail = kNone;
  };
  Chain& chainOf(std::uint32_t hash);
  void grow();

  std::vector<Chain> table_;  // open addressing, its size a power of two
  std::size_t used_ = 0;
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
  void release(std::string_view name);

 private:
  std::unordered_map<std::string, Numbers, TextHash, std::equal_to<>> stems_;
};

struct Indexes {
  std::unique_ptr<NameIndex> names;
  std::unique_ptr<UniqueNumbers> numbers;
  std::unique_ptr<std::unordered_map<const TAVObject*, std::uint32_t>> members;  // object to how often
};

}  // namespace tav
