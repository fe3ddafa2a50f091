#include "lineage/database_nodes.h"

#include "framework/std/dotted_name.h"
#include "framework/std/text.h"

namespace tav {
namespace {

std::string key(std::uint32_t number, std::string_view first, std::string_view second = {}) {
  std::string text = std::to_string(number) + '\0';
  return text.append(foldedName(first)).append(1, '\0').append(foldedName(second));
}

}  // namespace

std::uint32_t DatabaseNodes::addressOfConnection(const TAVStoreConnection* connection) {
  const auto [place, isNew] = connections_.try_emplace(connection);
  if (isNew) {
    place->second = addAddress(connection ? parseDatabaseAddress(factsOf(*connection)) : unnamedDatabase());
  }
  return place->second;
}

std::uint32_t DatabaseNodes::addAddress(const DatabaseAddress& address) {
  const std::string text =
      foldedName(address.server) + '\0' + foldedName(address.database) + (address.named ? "" : "\n");
  const auto [place, isNew] = addresses_.try_emplace(text);
  if (isNew) place->second = keepAddress(address);
  return place->second;
}

NodeId DatabaseNodes::table(std::uint32_t address, std::string_view schema, std::string_view name) {
  // Where a schema is a database, the connection's own one is only the one that is meant without it.
  if (!schema.empty() && addressAt(address).naming == TableNaming::databaseTable) {
    address = addAddress(addressOf(addressAt(address), {}, schema));
    schema = {};
  }
  if (schema.empty()) schema = addressAt(address).defaultSchema;
  if (!graph_.map_.empty()) {
    const Mapped& place = mapped(address, schema);
    address = place.address;
    schema = place.schema;
  }
  const auto [place, isNew] = tables_.try_emplace(key(address, schema, name));
  if (isNew) {
    place->second = addNode({NodeKind::databaseTable, kNoNode, nullptr, name}, address, schema);
  }
  return place->second;
}

const DatabaseNodes::Mapped& DatabaseNodes::mapped(std::uint32_t address, std::string_view schema) {
  const auto [place, isNew] = mapped_.try_emplace(std::to_string(address).append(1, '\0').append(schema));
  if (isNew) {
    DatabaseAddress moved = addressAt(address);
    place->second.schema = schema;
    graph_.map_.apply(moved, place->second.schema);
    place->second.address = addAddress(moved);
  }
  return place->second;
}

NodeId DatabaseNodes::namedTable(std::uint32_t address, std::string_view text) {
  return qualifiedTable(address, splitDottedName(text));
}

NodeId DatabaseNodes::qualifiedTable(std::uint32_t address, std::span<const std::string> parts) {
  // From behind: the table, its schema, its database, its server.
  const auto part = [&](std::size_t place) {
    return place <= parts.size() ? std::string_view(parts[parts.size() - place]) : std::string_view();
  };
  if (!part(3).empty() || !part(4).empty())
    address = addAddress(addressOf(addressAt(address), part(4), part(3)));
  return table(address, part(2), part(1));
}

NodeId DatabaseNodes::linked(std::uint32_t address, std::string_view cube, std::string_view id) {
  if (!graph_.map_.empty()) address = mapped(address, {}).address;
  if (!addressAt(address).isModel) return kNoNode;
  const auto [place, isNew] = linked_.try_emplace(key(address, cube, id));
  if (isNew) place->second = addNode({NodeKind::databaseTable, kNoNode, nullptr, id}, address, cube, true);
  return place->second;
}

NodeId DatabaseNodes::column(NodeId table, std::string_view name) {
  const auto [place, isNew] = columns_.try_emplace(key(table, name));
  if (isNew) {
    place->second = addNode({NodeKind::databaseColumn, table, nullptr, name}, addressOfNode(table), {});
  }
  return place->second;
}

NodeId DatabaseNodes::namedColumn(std::uint32_t address, std::string_view text, NodeId query) {
  const std::vector<std::string> parts = splitDottedName(text);
  if (parts.size() > 1)
    return column(qualifiedTable(address, std::span(parts).first(parts.size() - 1)), parts.back());
  const auto [place, isNew] = columns_.try_emplace(key(query, parts.back()));
  if (isNew) {
    if (!graph_.map_.empty()) address = mapped(address, {}).address;
    place->second = addNode({NodeKind::databaseColumn, kNoNode, nullptr, parts.back()}, address, {});
  }
  return place->second;
}

std::uint32_t DatabaseNodes::keepAddress(const DatabaseAddress& address) {
  graph_.addresses_.push_back(address);
  return static_cast<std::uint32_t>(graph_.addresses_.size() - 1);
}

const DatabaseAddress& DatabaseNodes::addressAt(std::uint32_t number) const {
  return graph_.addresses_[number];
}

NodeId DatabaseNodes::addNode(LineageNode node, std::uint32_t address, std::string_view schema,
                              bool isLinked) {
  const auto keep = [&](std::string_view text) {
    return text.empty() ? std::string_view() : std::string_view(graph_.texts_.emplace_back(text));
  };
  node.rawName = keep(node.rawName);
  graph_.nodes_.push_back(node);
  graph_.places_.push_back({address, keep(schema), isLinked});
  return static_cast<NodeId>(graph_.nodes_.size() - 1);
}

std::uint32_t DatabaseNodes::addressOfNode(NodeId id) const {
  return graph_.places_[id - graph_.firstDatabaseNode_].address;
}

}  // namespace tav
