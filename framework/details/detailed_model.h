#pragma once

#include "framework/details/details.h"

namespace tav {

/// A model with what its definition says beyond it, both somebody else's. A model alone is one without
/// details.
struct DetailedModel {
  DetailedModel(const TAVModel& itsModel,  // NOLINT(google-explicit-constructor)
                const Details* itsDetails = nullptr)
      : model(itsModel), details(itsDetails) {}

  const TAVModel& model;
  const Details* details;  ///< null when nobody asked for them, or a saved document has none
};

}  // namespace tav
