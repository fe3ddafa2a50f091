#pragma once

#include "framework/model/classes/model_object.h"
#include "framework/model/link.h"

/// What is stored in a data store of some kind and version: a model, a connection.
class TAV_API TAVSystemPackage : public TAVModelObject {
 public:
  TAVDataStore dataStore;

 protected:
  using TAVModelObject::TAVModelObject;
};

template <> struct tav::Meta<TAVSystemPackage> {
  static constexpr std::array attributes{attribute<&TAVSystemPackage::dataStore>("dataStore")};
  static constexpr std::array<LinkRow, 0> links{};
};
