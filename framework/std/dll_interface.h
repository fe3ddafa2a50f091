#pragma once

#include "framework/std/string.h"

/// The root of what a plug-in shows to its host.
class TAV_API KORVDllInterface {
 public:
  KORVDllInterface() = default;
  KORVDllInterface(const KORVDllInterface&) = default;
  KORVDllInterface& operator=(const KORVDllInterface&) = default;
  virtual ~KORVDllInterface();

  /// The plug-in's version with the time of its build; the same text for as long as the plug-in is loaded.
  virtual const TAVString& getBuildVersion() = 0;

 protected:
  TAVString buildVersion_;  // what getBuildVersion gives, once it was asked for
};
