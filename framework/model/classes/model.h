#pragma once

#include "framework/model/classes/system_package.h"
#include "framework/model/link.h"

/// The root of an object graph, with what the whole graph shares.
class TAV_API TAVModel : public TAVSystemPackage {
 public:
  tav::Container<TAVModelContent> content;
  tav::Parts<TAVMetadataOrigin> metadataOrigins;
  tav::Parts<TAVStoreConnection> storeConnections;
  tav::Parts<TAVType> types;
  tav::Parts<TAVPropertyType> propertyTypes;

  TAVMetadataOrigin& addMetadataOrigin(tav::Owned<TAVMetadataOrigin> origin);
  TAVStoreConnection& addStoreConnection(tav::Owned<TAVStoreConnection> connection);
  template <class T> T& addType(tav::Owned<T> type) {
    return tav::add<&TAVModel::types>(*this, std::move(type));
  }
  /// Detaches the model from the content of the multi-model that it was loaded with and gives it to the
  /// caller. Without a content the model is not the caller's to take: the result is null.
  tav::Owned<TAVModel> removeContent();

 protected:
  using TAVSystemPackage::TAVSystemPackage;
};

template <> struct tav::Meta<TAVModel> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{link<&TAVModel::content>("content", "models"),
                                    link<&TAVModel::metadataOrigins>("metadataOrigins", "model"),
                                    link<&TAVModel::storeConnections>("storeConnections", "model"),
                                    link<&TAVModel::types>("types", "model"),
                                    link<&TAVModel::propertyTypes>("propertyTypes", "model")};
};
