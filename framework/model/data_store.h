#pragma once

#include "framework/std/string.h"

/// A kind of data store with the version it has: what a system package says it is stored in.
struct TAVDataStore {
  TAVString name;
  int major = 0;
  int minor = 0;
  int release = 0;

  friend bool operator==(const TAVDataStore&, const TAVDataStore&) = default;
};
