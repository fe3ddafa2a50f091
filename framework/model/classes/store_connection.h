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
  /// What else is: single elements, and all that a namespace or package holds.
  tav::References<TAVNamespaceElement> connectionElements;
  tav::References<TAVNamespace> connectionNamespaces;
  tav::References<TAVPackage> connectionPackages;
  tav::Container<TAVModel> model;
};

template <> struct tav::Meta<TAVStoreConnection> {
  static constexpr std::array attributes{
      attribute<&TAVStoreConnection::connectionString>("connectionString")};
  static constexpr std::array links{
      link<&TAVStoreConnection::connectionClassifiers>("connectionClassifiers", "storeConnections"),
      link<&TAVStoreConnection::connectionElements>("connectionElements", "elementConnections"),
      link<&TAVStoreConnection::connectionNamespaces>("connectionNamespaces", "namespaceConnections"),
      link<&TAVStoreConnection::connectionPackages>("connectionPackages", "packageConnections"),
      link<&TAVStoreConnection::model>("model", "storeConnections")};
};
