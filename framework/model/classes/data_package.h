#pragma once

#include "framework/model/classes/package.h"
#include "framework/model/link.h"

/// A package of the data side of a store model.
class TAV_API TAVDataPackage : public TAVPackage {
 public:
  tav::Container<TAVStoreModel> dataModel;

  /// The number of objects that the package owns and imports.
  [[nodiscard]] std::int32_t getModelObjectCount() const {
    return namespaceElements.getCount() + importedNamespaceElements.getCount();
  }

 protected:
  using TAVPackage::TAVPackage;
};

template <> struct tav::Meta<TAVDataPackage> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{link<&TAVDataPackage::dataModel>("dataModel", "dataPackages")};
};
