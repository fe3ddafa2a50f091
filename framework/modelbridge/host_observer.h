#pragma once

// How a host sees more of a running import than its log: the share of the file that is parsed, whether it
// defines a database, and the model before the plug-in deletes it.

#include <cstdint>

#include "framework/api.h"

class TAVStoreModel;

namespace tav {

/// What a host derives from to follow imports. Of the observers that live, the one made last is told; one
/// thread makes observers and runs imports.
class TAV_API HostObserver {
 public:
  HostObserver() noexcept;
  HostObserver(const HostObserver&) = delete;
  HostObserver& operator=(const HostObserver&) = delete;
  virtual ~HostObserver();

  /// A part of the input has been parsed; counts of bytes.
  virtual void onParsed(std::uint64_t read, std::uint64_t total);
  /// The input defines a database, which is read now. A host is not told of input that a plug-in reads as a
  /// database without knowing that it is one: then the model tells.
  virtual void onDatabase();
  /// A plug-in hands its finished model over to be saved. Returns whether it is to be saved: a host that only
  /// looks at the model returns false, and no file is written. What this throws ends the import.
  virtual bool onModel(const TAVStoreModel& model);

 private:
  HostObserver* before_;
};

/// Tells the host's observer, if there is one.
TAV_API void reportParsed(std::uint64_t read, std::uint64_t total);
TAV_API void reportDatabase();
/// Shows the model to the host's observer; whether it is to be saved, which it is without an observer.
TAV_API bool reportModel(const TAVStoreModel& model);

}  // namespace tav
