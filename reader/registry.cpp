#include "reader/registry.h"

#include <cstring>

#include "framework/model/classes/element.h"

namespace {

const char* idOf(const void* object) {
  return static_cast<const TAVElement*>(object)->nativeId.c_str();
}

int compareIds(const char* a, const char* b) {
  if (*a == '\0' || *b == '\0') return 1;
  const int order = std::strcmp(a, b);
  return (order > 0) - (order < 0);
}

}  // namespace

ID2ObjectHashtable::ID2ObjectHashtable(int buckets) : TAVHashtable(buckets) {}

ID2ObjectHashtable::~ID2ObjectHashtable() = default;

int ID2ObjectHashtable::compare2Object(const void* a, const void* b) const {
  return compareIds(idOf(a), idOf(b));
}

int ID2ObjectHashtable::compare2Key(const void* object, const void* key) const {
  return compareIds(idOf(object), static_cast<const char*>(key));
}

std::uint32_t ID2ObjectHashtable::hashObject(const void* object) const {
  return stringHashCode(idOf(object));
}

std::uint32_t ID2ObjectHashtable::hashKey(const void* key) const {
  return stringHashCode(static_cast<const char*>(key));
}
