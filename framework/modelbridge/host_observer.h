#pragma once

// How a host sees more of a running import than its log: the share of the file that is parsed, whether it
// defines a database, the model before the plug-in deletes it, and what the definition says beyond it.

#include <cstdint>
#include <memory>

#include "framework/api.h"
#include "framework/details/details.h"
#include "framework/model/owned.h"

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
  /// A plug-in has made its model. A host that knows more of the input than its path says adds it here: what
  /// it is called, for instance.
  virtual void onMade(TAVStoreModel& model);
  /// A plug-in hands its finished model over to be saved. Returns whether it is to be saved: a host that only
  /// looks at the model returns false, and no file is written. What this throws ends the import.
  virtual bool onModel(const TAVStoreModel& model);
  /// A plug-in has no more use for its model, which goes with the call unless the host keeps it. What it
  /// names is loaded as long as the plug-in is. Not told of an import that fails.
  virtual void onDone(Owned<TAVStoreModel> model);
  /// Whether the host asks for the details of what is imported. Without it, reading them costs nothing.
  virtual bool wantsDetails();

  /// The details of the model that a plug-in hands over, from before onModel(); null when it has none.
  [[nodiscard]] const Details* details() const noexcept { return details_.get(); }
  /// The same, for a host that adds to them in onMade().
  [[nodiscard]] Details* details() noexcept { return details_.get(); }
  /// The same, for a host that keeps the model that they are of.
  [[nodiscard]] std::unique_ptr<Details> takeDetails() noexcept { return std::move(details_); }

 private:
  friend TAV_API void reportDetails(std::unique_ptr<Details> details);
  HostObserver* before_;
  std::unique_ptr<Details> details_;
};

/// Tells the host's observer, if there is one.
TAV_API void reportParsed(std::uint64_t read, std::uint64_t total);
TAV_API void reportDatabase();
/// Whether details are asked for; nobody does without an observer.
TAV_API bool areDetailsWanted();
/// Hands the details of the model over that is to be shown next. They are the observer's; without one they
/// go.
TAV_API void reportDetails(std::unique_ptr<Details> details);
/// The details that were handed over; null when there are none.
TAV_API const Details* reportedDetails();
/// Lets the host's observer add to the model.
TAV_API void reportMade(TAVStoreModel& model);
/// Gives the host's observer the model that nobody needs any longer; without one it goes.
TAV_API void reportDone(Owned<TAVStoreModel> model);
/// Shows the model to the host's observer; whether it is to be saved, which it is without an observer.
TAV_API bool reportModel(const TAVStoreModel& model);

}  // namespace tav
