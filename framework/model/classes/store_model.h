#pragma once

#include "framework/model/classes/model.h"
#include "framework/model/link.h"

/// The model of one data store: the result of an import.
class TAV_API TAVStoreModel : public TAVModel {
 public:
  TAVStoreModel() : TAVModel(tav::classId<TAVStoreModel>) {}
  TAVStoreType storeType;
  /// ISO 8601, UTC.
  TAVString modificationTime;
  tav::Parts<TAVDataPackage> dataPackages;
  tav::Parts<TAVDesignPackage> designPackages;

  template <class T> T& addDataPackage(tav::Owned<T> package) {
    return tav::add<&TAVStoreModel::dataPackages>(*this, std::move(package));
  }
  template <class T> T& addDataPackageUniqueName(tav::Owned<T> package, char separator) {
    return tav::addUnique<&TAVStoreModel::dataPackages>(*this, std::move(package), separator);
  }
  TAVDesignPackage& addDesignPackageUniqueName(tav::Owned<TAVDesignPackage> package, char separator);
};

template <> struct tav::Meta<TAVStoreModel> {
  static constexpr std::array attributes{attribute<&TAVStoreModel::storeType>("storeType"),
                                         attribute<&TAVStoreModel::modificationTime>("modificationTime")};
  static constexpr std::array links{link<&TAVStoreModel::dataPackages>("dataPackages", "dataModel"),
                                    link<&TAVStoreModel::designPackages>("designPackages", "designModel")};
};
