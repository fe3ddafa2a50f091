#pragma once

#include "framework/std/hashtable.h"

class TAVElement;

/// Model objects by the ID that they have in the definition. It owns none of them. An object without an ID is
/// kept but never found. Adding compares nothing, so it costs the same however many share an ID.
class ID2ObjectHashtable : public TAVHashtable {
 public:
  explicit ID2ObjectHashtable(int buckets);
  ~ID2ObjectHashtable() override;

  /// 0 when both have the same ID and it is not empty; otherwise not 0.
  int compare2Object(const void* a, const void* b) const override;
  /// The same for an object and an ID, a C string.
  int compare2Key(const void* object, const void* key) const override;
  std::uint32_t hashObject(const void* object) const override;
  std::uint32_t hashKey(const void* key) const override;
};
