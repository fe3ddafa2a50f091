#pragma once

#include "framework/model/classes/system_package.h"
#include "framework/model/link.h"

/// A connection to a data store: a data source of the definition.
class TAV_API TAVStoreConnection : public TAVSystemPackage {
 public:
  TAVStoreConnection() : TAVSystemPackage(tav::classId<TAVStoreConnection>) {}
  /// As the definition holds it, passwords included.
  TAVString connectionString;
  /// The classifiers that are read through this connection.
  tav::References<TAVClassifier> connectionClassifiers;
  tav::Container<TAVModel> model;
};

template <> struct tav::Meta<TAVStoreConnection> {
  static constexpr std::array attributes{
      attribute<&TAVStoreConnection::connectionString>("connectionString")};
  static constexpr std::array links{
      link<&TAVStoreConnection::connectionClassifiers>("connectionClassifiers", "storeConnections"),
      link<&TAVStoreConnection::model>("model", "storeConnections")};
};
