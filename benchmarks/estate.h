#pragma once

// The plan of a made-up definition: what there is and what refers to what, before any of it is written.
// An estate is a row of areas; an area has one data source view, the dimensions over it and one cube.

#include <cstdint>
#include <string>
#include <vector>

namespace tav::bench {

struct Column {
  std::string name;
  std::string type;        // without the prefix "xs:"; empty for text of `length` characters
  unsigned length = 0;     // 0 unless `type` is empty
  std::string expression;  // of a computed column
};

struct Table {
  std::string id;
  std::string friendlyName;
  std::string databaseName;
  std::string query;  // of a named query
  std::vector<Column> columns;
};

struct Attribute {
  std::string id;
  std::string name;
  std::vector<std::size_t> keys;  // columns of the dimension's table
  std::size_t nameColumn = kNone;
  std::size_t valueColumn = kNone;

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
};

struct Hierarchy {
  std::string id;
  std::string name;
  std::vector<std::size_t> levels;  // attributes of the dimension, the widest first
};

struct Dimension {
  std::string id;
  std::string name;
  bool isTime = false;
  std::size_t table = 0;
  std::vector<Attribute> attributes;  // the first is the key
  std::vector<Hierarchy> hierarchies;
};

struct Measure {
  std::string id;
  std::string name;
  std::string aggregation;  // empty: not written, which means "Sum"
  std::string expression;
  std::size_t column = Attribute::kNone;  // none: a count of rows
  bool hidden = false;
};

struct Usage {
  std::size_t dimension = 0;
  std::size_t column = 0;  // of the fact table
};

struct MeasureGroup {
  std::string id;
  std::string name;
  std::size_t table = 0;
  std::vector<Measure> measures;
  std::vector<Usage> usages;
};

struct Area {
  std::string name;
  std::string viewId;
  std::string sourceId;
  std::string cubeId;
  std::vector<Table> tables;
  std::vector<Dimension> dimensions;
  std::vector<MeasureGroup> groups;
};

/// How much there is in an area, in thousandths of an area of full size (about 3 MB when written).
using Scale = std::uint32_t;

/// The plan of the area of that number: the same for the same arguments, whatever was planned before.
Area planArea(std::uint64_t seed, unsigned number, Scale scale);

/// `count` at that scale, never below `least`.
std::size_t scaled(std::size_t count, Scale scale, std::size_t least);

}  // namespace tav::bench
