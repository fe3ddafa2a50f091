#pragma once

#include "framework/std/string.h"

/// A moment, in seconds since 1970-01-01 00:00:00 UTC; any 64-bit count.
class TAV_API TAVDate {
 public:
  explicit TAVDate(std::int64_t seconds) : seconds_(seconds) {}

  /// The moment on the clocks of the US Pacific time zone, "2026-03-08 03:00:00 PDT" or "... PST". It needs
  /// no time zone data: the rules are the ones of federal law since 1967, with the early starts of 1974 and
  /// 1975; the rules of 2007 hold for all years to come, and before 1967, when states and towns had rules of
  /// their own, all is standard time. Years are those of the Gregorian calendar, also before it began, in
  /// four digits or more; the year before 1 is 0, the ones before that are negative.
  [[nodiscard]] TAVString getPstTimestamp() const;

 private:
  std::int64_t seconds_;
};
