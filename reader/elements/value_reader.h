#pragma once

// Values: what an element without others in it says of the item that it belongs to, and what bindings and XML
// attributes say.

#include "reader/elements/item_reader.h"
#include "reader/elements/mdx_reader.h"
#include "reader/elements/partition_queries.h"

namespace tav {

class ValueReader {
 public:
  ValueReader(ElementReading& reading, const ItemReader& items, MdxReader& mdx)
      : reading_(reading), items_(items), mdx_(mdx), queries_(reading.run, reading.references) {}

  /// Reads an element that holds no others.
  void read(const TAVDOMElement& element, RuleTree::Node node, const ElementPlace& parent);
  /// Reads a binding to a table or column, when the element is one.
  void readBinding(const ElementPlace& place);
  void readAttributes(const ElementPlace& place);

 private:
  void readValue(const TAVDOMElement& element, const ElementRule& rule, const ElementPlace& parent);
  void readPlain(const TAVDOMElement& element, const ElementPlace& parent);
  void addReference(const TAVDOMElement& element, const ElementRule& rule, const ElementPlace& parent);
  [[nodiscard]] bool isNoted(const TAVDOMElement& element, const ElementPlace& parent) const;
  [[nodiscard]] bool isShownConnection(const ElementPlace& place) const;

  ElementReading& reading_;
  const ItemReader& items_;
  MdxReader& mdx_;
  PartitionQueries queries_;
};

}  // namespace tav
