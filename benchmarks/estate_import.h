#pragma once

#include <cstdint>
#include <string>

namespace tav::bench {

/// Imports that many small made-up definitions into one estate database, a tenth of them at a time, and
/// prints what each tenth took and what `impact` of a column of all of them takes then. False when a bound is
/// not kept: time for each definition and memory stay as they are, however many there are already.
bool measureEstate(const std::string& program, std::uint64_t count);

}  // namespace tav::bench
