#pragma once

#include "framework/model/classes/package.h"
#include "framework/model/link.h"

/// A folder of the design side of a store model.
class TAV_API TAVDesignPackage : public TAVPackage {
 public:
  TAVDesignPackage() : TAVPackage(tav::classId<TAVDesignPackage>) {}
  bool folder = false;
  tav::Container<TAVStoreModel> designModel;

  /// The classifiers among the elements, in order.
  [[nodiscard]] std::vector<TAVModelElement*> getModelElements() const;
  [[nodiscard]] std::int32_t getModelElementCount() const;
  /// Classifier `index` among them, from 0, or null.
  [[nodiscard]] TAVModelElement* getModelElement(std::int32_t index) const;
};

template <> struct tav::Meta<TAVDesignPackage> {
  static constexpr std::array attributes{attribute<&TAVDesignPackage::folder>("folder")};
  static constexpr std::array links{link<&TAVDesignPackage::designModel>("designModel", "designPackages")};
};
