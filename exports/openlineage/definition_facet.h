#pragma once

// What a definition says of a dataset and no facet of the standard can hold: a facet of our own.

#include "exports/openlineage/datasets.h"
#include "framework/std/json_writer.h"

namespace tav {

inline constexpr std::string_view kDefinitionFacet = "xmlaBridge_definition";
inline constexpr std::string_view kDefinitionFacetSchema =
    "urn:xmla-bridge:facets:1-0-0#/$defs/XmlaBridgeDefinitionDatasetFacet";

/// What the facet of a dataset tells.
struct DatasetDefinition {
  std::vector<NodeId> objects;  ///< of the details, below the dataset
  std::vector<LineageEdge>
      relations;                 ///< into the dataset, its fields and objects, of all that is no lineage
  std::vector<NodeId> settings;  ///< the dataset, its fields and objects, as far as they have some

  [[nodiscard]] bool empty() const noexcept {
    return objects.empty() && relations.empty() && settings.empty();
  }
};

DatasetDefinition definitionOf(const LineageGraph& graph, const CatalogDatasets& datasets, DatasetId id);

/// The members "objects", "relations" and "settings", each left out where there is none.
void writeDefinition(JsonWriter& json, const LineageGraph& graph, const DatasetDefinition& definition);

}  // namespace tav
