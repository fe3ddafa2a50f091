#pragma once

#include "framework/model/classes/element.h"
#include "framework/model/link.h"

/// An element that has a physical name beside its own, and synonyms.
class TAV_API TAVModelObject : public TAVElement {
 public:
  TAVString physicalName;
  tav::Parts<TAVSynonym> synonyms;

  void setPhysicalName(TAVString name) { physicalName = std::move(name); }
  TAVSynonym& addSynonym(tav::Owned<TAVSynonym> synonym);

 protected:
  using TAVElement::TAVElement;
};

template <> struct tav::Meta<TAVModelObject> {
  static constexpr std::array attributes{attribute<&TAVModelObject::physicalName>("physicalName")};
  static constexpr std::array links{link<&TAVModelObject::synonyms>("synonyms", "modelObject")};
};
