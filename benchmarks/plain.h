#pragma once

// Writes the parts of a definition without anything that nobody reads.

#include <string>
#include <vector>

#include "benchmarks/estate.h"
#include "benchmarks/xml_writer.h"

namespace tav::bench {

struct PlainCube {
  std::string id;
  std::string name;
  std::vector<MeasureGroup> groups;
  bool hasDimensions = false;  // all of the area's
  std::string script;
};

/// When `spread`, each attribute is over a table of its own.
void writePlainDimension(XmlWriter& to, const Area& area, const Dimension& dimension, bool spread);
void writePlainCube(XmlWriter& to, const Area& area, const PlainCube& cube);

}  // namespace tav::bench
