#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>

namespace tav::bench {

/// Writes a made-up definition of about that many bytes, from about 8,000 up: a tenth more or less. The same
/// bytes for the same arguments on every platform.
void writeEstate(std::ostream& out, std::uint64_t bytes, std::uint64_t seed);

/// Writes a definition with `count` of one thing and little else. Throws std::invalid_argument for a kind
/// that is none of:
///   equal-names  dimensions that all have one name, over as many tables with one friendly name
///   attributes   attributes of one dimension, each over a column of its own
///   tables       tables of one view, with one dimension whose attributes are spread over them
///   measures     measures of one cube, each over a column of its own
///   references   references in the expressions of one script
void writeMany(std::ostream& out, std::string_view kind, std::uint64_t count);

}  // namespace tav::bench
