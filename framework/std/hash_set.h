#pragma once

#include <unordered_set>

#include "framework/std/container.h"
#include "framework/std/string.h"

/// A set of distinct strings, which it owns. Members are walked in the order in which they came, so that what
/// is made from a set never depends on hashes.
class TAV_API TAVStringHashSet : public TAVContainer {
 public:
  class Iterator;

  /// An empty set with room for `capacity` members; it grows beyond.
  explicit TAVStringHashSet(std::int32_t capacity = 0);
  TAVStringHashSet(const TAVStringHashSet& other);
  TAVStringHashSet& operator=(const TAVStringHashSet& other);
  ~TAVStringHashSet() override;

  /// Inserts the text; false when it was a member before.
  bool add(const TAVString& text);
  [[nodiscard]] bool contains(const TAVString& text) const { return members_.contains(text); }
  void clear();
  void empty() override { clear(); }

 private:
  std::unordered_set<TAVString> members_;  // the walk goes over their addresses, which stay
};

class TAV_API TAVStringHashSet::Iterator : public TAVContainer::Iterator {
 public:
  explicit Iterator(const TAVStringHashSet& set) noexcept : TAVContainer::Iterator(set) {}

  /// Moves to the next member and gives it; the empty string when there is none.
  const TAVString& next() noexcept;
};
