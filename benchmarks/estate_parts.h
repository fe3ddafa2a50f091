#pragma once

// Writes the parts of a planned area. What nobody reads is written too, in the share that it has in real
// files: annotations, translations, aggregation designs, partitions, perspectives.

#include "benchmarks/estate.h"
#include "benchmarks/random.h"
#include "benchmarks/xml_writer.h"

namespace tav::bench {

void writeStamps(XmlWriter& to);
/// Translations of a caption into as many languages as the area's definition has.
void writeTranslations(XmlWriter& to, Random& random);
/// An annotation of a name that designers give.
void writeAnnotation(XmlWriter& to, std::string_view name, std::string_view value);
/// The annotation in which designers keep where on a diagram they drew the tables.
void writeDiagram(XmlWriter& to, const Area& area, std::size_t firstTable, std::size_t tables,
                  Random& random);
/// A column binding under that tag: data type, size and where the column is.
void writeBinding(XmlWriter& to, std::string_view tag, const Table& table, std::size_t column);
/// The definition's name of a data type of the schema ("int" gives "Integer").
std::string_view dataType(const Column& column);

void writeDimension(XmlWriter& to, const Area& area, const Dimension& dimension, Random& random);
/// `linked` is the area whose first measure group this cube links, or null.
void writeCube(XmlWriter& to, const Area& area, const Area* linked, Random& random, Scale scale);
/// A script of that many calculated members, with sets and scopes, over the area's measures and dimensions.
std::string scriptText(const Area& area, Random& random, std::size_t members);
/// The same, of as many members as make at least `bytes`.
std::string scriptOfSize(const Area& area, Random& random, std::uint64_t bytes);
void writeKpis(XmlWriter& to, const Area& area, Random& random, Scale scale);
void writeDataSource(XmlWriter& to, const Area& area);
void writeView(XmlWriter& to, const Area& area, Random& random);

/// The name spaces that the root of a definition declares, with the leading blank.
std::string rootNamespaces();

}  // namespace tav::bench
