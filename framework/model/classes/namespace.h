#pragma once

#include "framework/model/classes/namespace_element.h"
#include "framework/model/link.h"

/// An element that contains namespace elements under one set of names.
class TAV_API TAVNamespace : public TAVNamespaceElement {
 public:
  tav::Parts<TAVNamespaceElement> namespaceElements;
  tav::BackReferences<TAVStoreConnection> namespaceConnections;

  template <class T> T& addNamespaceElement(tav::Owned<T> element) {
    return tav::add<&TAVNamespace::namespaceElements>(*this, std::move(element));
  }
  template <class T> T& addNamespaceElementUniqueName(tav::Owned<T> element, char separator) {
    return tav::addUnique<&TAVNamespace::namespaceElements>(*this, std::move(element), separator);
  }
  /// The packages among the elements, in order.
  [[nodiscard]] std::vector<TAVPackage*> getChildPackages() const;
  [[nodiscard]] std::int32_t getChildPackageCount() const;
  /// Package `index` among them, from 0, or null.
  [[nodiscard]] TAVPackage* getChildPackage(std::int32_t index) const;
  /// The first child package of this name, or null.
  [[nodiscard]] TAVPackage* getChildPackage(std::string_view name) const;

 protected:
  using TAVNamespaceElement::TAVNamespaceElement;
};

template <> struct tav::Meta<TAVNamespace> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVNamespace::namespaceElements>("namespaceElements", "nameSpace"),
      link<&TAVNamespace::namespaceConnections>("namespaceConnections", "connectionNamespaces")};
};
