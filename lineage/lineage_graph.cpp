#include "lineage/lineage_graph.h"

#include <algorithm>

#include "framework/model/roles.h"
#include "framework/std/mask.h"
#include "framework/std/text.h"

namespace tav {
namespace {

/// The server of a connection that names none (see DatabaseAddress).
constexpr std::string_view kUnknownServer = "connection://";

}  // namespace

const DatabaseAddress* LineageGraph::database(NodeId id) const noexcept {
  return id < firstDatabaseNode_ ? nullptr : &addresses_[places_[id - firstDatabaseNode_].address];
}

std::string_view LineageGraph::rawSchema(NodeId id) const noexcept {
  return id < firstDatabaseNode_ ? std::string_view() : places_[id - firstDatabaseNode_].schema;
}

bool LineageGraph::isShared(NodeId id) const {
  const DatabaseAddress* address = database(id);
  if (!address || !address->named || address->server.starts_with(kUnknownServer)) return false;
  // A column of an unknown table is nobody else's.
  return node(id).kind == NodeKind::databaseTable || node(id).owner != kNoNode;
}

std::string_view LineageGraph::readModel(NodeId id) const {
  return isShared(id) && database(id)->isModel ? std::string_view(database(id)->database)
                                               : std::string_view();
}

std::string LineageGraph::definitionId(NodeId id) const {
  constexpr std::string_view kIdSetting = "ID";
  for (const DetailSetting* setting : rawSettings(id))
    if (setting->name == kIdSetting) return maskPasswords(setting->value);
  return name(id);
}

/// The address and names without letter case.
std::string LineageGraph::sharedKey(NodeId id) const {
  const NodeId table = node(id).kind == NodeKind::databaseColumn ? node(id).owner : id;
  const DatabaseAddress& address = *database(id);
  if (address.isModel) {
    const std::string part = table == id ? std::string() : name(id);
    const std::string holder = isLinked(table) ? linkedHolder(schema(table), name(table)) : name(table);
    return readPartKey(modelPartKey(address.database, holder, part), address.server);
  }
  std::string key;
  for (const std::string_view part : {std::string_view(address.server), std::string_view(address.database),
                                      rawSchema(table), node(table).rawName})
    key.append(foldedName(part)).append(1, '\0');
  return table == id ? key : key.append(foldedName(node(id).rawName));
}

/// Whether rows of tables are all that gives a value of its own: what changes it afterwards does not count.
bool LineageGraph::isCountOfTables(NodeId id) const {
  const auto sources = into(id);
  const auto isCounted = [](const LineageEdge& edge) { return edge.kind == EdgeKind::counted; };
  const auto isOther = [](const LineageEdge& edge) {
    return edge.kind == EdgeKind::direct || edge.kind == EdgeKind::computed ||
           edge.kind == EdgeKind::aggregated;
  };
  return !isClassifierKind(node(id).kind) && std::any_of(sources.begin(), sources.end(), isCounted) &&
         std::none_of(sources.begin(), sources.end(), isOther);
}

bool LineageGraph::countsRows(NodeId id) const {
  const LineageNode& original = node(originalOf(id));
  if (tabular_) return isCountOfTables(originalOf(id));
  const auto* measure = as<TAVMeasure>(original.object);
  return measure && original.kind == NodeKind::measure && tav::countsRows(*measure);
}

}  // namespace tav
