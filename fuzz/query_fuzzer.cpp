// Any bytes are a SELECT statement: its parts lie in the text, and following its names ends.

#include <cstdint>

#include "framework/expression/query_resolver.h"
#include "fuzz/expression_laws.h"

namespace {

void checkPart(const tav::Query& query, const tav::QueryPart& part) {
  tav::fuzz::require(part.begin <= part.end && part.end <= query.source.size());
  for (const tav::QueryReference& reference : part.references)
    tav::fuzz::require(reference.block < query.blocks.size() || query.blocks.empty());
  for (const std::uint32_t used : part.queries) tav::fuzz::require(used < query.queries.size());
}

void checkSource(const tav::QueryResolver& resolver, const tav::QuerySource& source) {
  tav::fuzz::require(source.object == tav::QuerySource::kUnknown ||
                     source.object < resolver.objects().size());
}

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tav::Query query = tav::parseQuery({reinterpret_cast<const char*>(data), size});
  for (const tav::QueryPart& condition : query.conditions) checkPart(query, condition);
  tav::QueryResolver resolver(query);
  for (const tav::QueryBlock& block : query.blocks) {
    for (const tav::QueryColumn& column : block.columns) {
      checkPart(query, column);
      for (const tav::QuerySource& source : resolver.sourcesOf(column.name)) checkSource(resolver, source);
    }
  }
  for (const tav::QuerySource& source : resolver.conditionSources()) checkSource(resolver, source);
  return 0;
}
