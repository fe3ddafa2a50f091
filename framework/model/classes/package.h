#pragma once

#include "framework/model/classes/namespace.h"
#include "framework/model/link.h"

/// A namespace that can list elements of other packages without moving them.
class TAV_API TAVPackage : public TAVNamespace {
 public:
  tav::References<TAVNamespaceElement> importedNamespaceElements;
  tav::BackReferences<TAVStoreConnection> packageConnections;

  /// Lists `element` under a name that is free among the imported elements; the element itself takes it.
  void addImportedNamespaceElementUniqueName(TAVNamespaceElement& element, char separator);

 protected:
  using TAVNamespace::TAVNamespace;
};

template <> struct tav::Meta<TAVPackage> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVPackage::importedNamespaceElements>("importedNamespaceElements", "importingPackages"),
      link<&TAVPackage::packageConnections>("packageConnections", "connectionPackages")};
};
