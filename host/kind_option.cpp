#include "host/kind_option.h"

#include <fmt/ostream.h>

#include "framework/std/nearest_word.h"
#include "framework/std/printable.h"

namespace host {
namespace {

std::string offerKind(const std::string& name) {
  std::vector<std::string_view> kinds;
  kinds.reserve(tav::kNodeKindCount);
  for (std::size_t i = 0; i < tav::kNodeKindCount; ++i)
    kinds.push_back(tav::nodeKindName(static_cast<tav::NodeKind>(i)));
  return tav::offerNearest(name, kinds);
}

std::string unknownKind(const std::string& name) {
  if (tav::objectKindOf(name)) return {};
  const std::string cause = "there is no kind '" + tav::printable(name) + "'";
  const std::string offer = offerKind(name);
  return cause + (offer.empty() ? "; " : offer + " ") + "xmla-bridge help kinds lists them";
}

}  // namespace

void addKinds(const CommandParser& parser, std::vector<std::string>& kinds) {
  parser
      .addOption("--kind KINDS", kinds,
                 "Only nodes of these kinds, several with commas; for list, csv and markdown (default: all). "
                 "xmla-bridge help kinds lists them")
      .separatedBy(',')
      .oneEachTime()
      .check(unknownKind);
}

std::vector<tav::NodeKind> kindsOf(const std::vector<std::string>& names) {
  std::vector<tav::NodeKind> kinds;
  for (const std::string& name : names)
    if (const auto kind = tav::objectKindOf(name)) kinds.push_back(*kind);
  return kinds;
}

void writeKinds(std::ostream& out) {
  std::size_t width = 0;
  for (std::size_t i = 0; i < tav::kNodeKindCount; ++i)
    width = std::max(width, tav::nodeKindName(static_cast<tav::NodeKind>(i)).size());
  for (std::size_t i = 0; i < tav::kNodeKindCount; ++i) {
    const auto kind = static_cast<tav::NodeKind>(i);
    fmt::print(out, "{:<{}}  {}\n", tav::nodeKindName(kind), width, tav::nodeKindLabel(kind));
  }
}

}  // namespace host
