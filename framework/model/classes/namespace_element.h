#pragma once

#include "framework/model/classes/model_object.h"
#include "framework/model/link.h"

/// What can be listed in a namespace: packages, classifiers, types.
class TAV_API TAVNamespaceElement : public TAVModelObject {
 public:
  tav::Container<TAVNamespace> nameSpace;
  tav::BackReferences<TAVPackage> importingPackages;
  tav::BackReferences<TAVStoreConnection> elementConnections;

 protected:
  using TAVModelObject::TAVModelObject;
};

template <> struct tav::Meta<TAVNamespaceElement> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVNamespaceElement::nameSpace>("nameSpace", "namespaceElements"),
      link<&TAVNamespaceElement::importingPackages>("importingPackages", "importedNamespaceElements"),
      link<&TAVNamespaceElement::elementConnections>("elementConnections", "connectionElements")};
};
