#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>

namespace tav::bench {

/// Writes a made-up definition of about that many bytes: from 1 MB up a twentieth more or less, below a
/// quarter, because it grows in leaps, and never less than about 12,600. The same bytes for the same
/// arguments on every platform.
void writeEstate(std::ostream& out, std::uint64_t bytes, std::uint64_t seed);

/// Writes a definition with `count` of one thing and little else, the same bytes on every platform. Throws
/// std::invalid_argument for a kind that is none of:
///   equal-names     dimensions that all have one name, over as many tables with one friendly name
///   attributes      attributes of one dimension, each over a column of its own
///   levels          the same, with as many levels
///   columns         columns of one table, with one attribute
///   uneven          attributes as above, and as many dimensions of one attribute
///   tables          tables of one view, with one dimension whose attributes are spread over them
///   measures        measures of one cube, each over a column of its own
///   equal-measures  the same, all of one name
///   references      references in the expressions of one script
///   cubes           cubes of 100 measures and 100 calculated members over the same dimensions
///   script          bytes of one script, as scripts are
void writeMany(std::ostream& out, std::string_view kind, std::uint64_t count);

/// Writes a made-up tabular definition (JSON) of about that many bytes: tables with columns, measures,
/// partitions in M and SQL, hierarchies, annotations; relationships; translations. It grows in leaps of about
/// 80 KB. The same bytes for the same arguments on every platform.
void writeTabular(std::ostream& out, std::uint64_t bytes, std::uint64_t seed);

/// Writes a tabular definition with `count` of one thing and little else: model-columns, model-measures,
/// model-partitions, model-annotations or model-members of one table; model-tables; model-expressions (shared
/// ones); model-equal-columns, -measures, -members and -tables, all of one name. Throws std::invalid_argument
/// for a kind that is none of these.
void writeTabularMany(std::ostream& out, std::string_view kind, std::uint64_t count);

}  // namespace tav::bench
