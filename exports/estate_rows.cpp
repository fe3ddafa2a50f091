#include "exports/estate_rows.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "exports/sqlite_schema.h"
#include "exports/versions.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"
#include "lineage/node_search.h"

namespace tav {
namespace {

constexpr std::string_view kNodes =
    "SELECT id, model_id, owner_id, cube_id, kind, name, qualified_name, path, server, database, schema, "
    "expression, language, aggregation, meeting, hidden, unique_name FROM nodes ";
constexpr std::string_view kEdges =
    "SELECT e.rowid, e.from_id, e.to_id, e.kind, t.kind, e.text, e.found_by_graph, e.replaces "
    "FROM edges e JOIN nodes t ON t.id = e.to_id ";

constexpr std::string_view kRoot = "/";  // the path of a database, as people write it

/// A database of a later program may have kinds that this one does not know.
NodeKind nodeKindIn(std::string_view name) {
  return objectKindOf(name).value_or(NodeKind::other);
}

/// The folded texts that the name of a node may be which `name` means: all of it, its last part, and what
/// stands behind a slash.
std::vector<std::string> keysOf(std::string_view name) {
  std::vector<std::string> keys{foldedName(name), foldedName(splitDottedName(name).back())};
  for (std::size_t at = name.find('/'); at != name.npos; at = name.find('/', at + 1))
    keys.push_back(foldedName(name.substr(at + 1)));
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

bool hasReaders(SqliteDatabase& database) {
  const auto [from, to] = readPartRange({});
  SqliteStatement first(database, "SELECT 1 FROM nodes WHERE meeting > ?1 AND meeting < ?2 LIMIT 1");
  first.bind(1, from);
  first.bind(2, to);
  return first.next();
}

std::unordered_map<std::int64_t, std::string> namesOf(const std::vector<EstateModel>& models) {
  std::unordered_map<std::int64_t, std::string> names;
  for (const EstateModel& model : models) names.emplace(model.id, model.name);
  return names;
}

}  // namespace

EstateRows::EstateRows(const std::string& path, const std::vector<EstateModel>& models)
    : database_(path, kEstatePatience, SqliteAccess::read),
      models_((requireSchema(database_, path), namesOf(models))),
      byId_(database_, std::string(kNodes) + "WHERE id = ?1"),
      byName_(database_, std::string(kNodes) + "WHERE folded_name = ?1 ORDER BY id"),
      byOwner_(database_, std::string(kNodes) + "WHERE owner_id = ?1 ORDER BY id"),
      byMeeting_(database_, std::string(kNodes) + "WHERE meeting = ?1 ORDER BY id"),
      byPart_(database_, std::string(kNodes) + "WHERE meeting > ?1 AND meeting < ?2 ORDER BY id"),
      byModelAndName_(database_,
                      std::string(kNodes) + "WHERE folded_name = ?1 AND model_id = ?2 ORDER BY id"),
      edgesInto_(database_, std::string(kEdges) + "WHERE e.to_id = ?1 ORDER BY e.rowid"),
      edgesOutOf_(database_, std::string(kEdges) + "WHERE e.from_id = ?1 ORDER BY e.rowid"),
      openNames_(database_, "SELECT name, state, note FROM open_names WHERE node_id = ?1 ORDER BY rowid"),
      definitionId_(database_, "SELECT value FROM settings WHERE node_id = ?1 AND +name = 'ID' LIMIT 1") {
  for (const auto& [id, name] : models_) modelsByName_.emplace(foldedName(name), id);
  readsModels_ = hasReaders(database_);
  readNotes();
}

void EstateRows::readNamed(std::string_view name) {
  Ids found;
  for (const std::string& key : keysOf(name)) {
    byName_.bind(1, key);
    const Ids named = readNodes(byName_);
    found.insert(found.end(), named.begin(), named.end());
  }
  const std::string path(name == kRoot ? "" : name);
  SqliteStatement byPath(database_, std::string(kNodes) + "WHERE path = ?1 ORDER BY id");
  byPath.bind(1, path);
  const Ids placed = readNodes(byPath);
  found.insert(found.end(), placed.begin(), placed.end());
  readNameless(found);
  readCandidates(found);
}

/// What has no name of its own goes by its owner's.
void EstateRows::readNameless(const Ids& found) {
  SqliteStatement parts(database_,
                        std::string(kNodes) + "WHERE owner_id = ?1 AND folded_name = '' ORDER BY id");
  for (const std::int64_t id : found) {
    parts.bind(1, id);
    readNodes(parts);
  }
}

void EstateRows::readHolding(std::string_view name) {
  const std::vector<std::string> parts = splitDottedName(name);
  const std::string folded = foldedName(parts.size() == 1 ? std::string_view(parts.front()) : name);
  SqliteStatement holding(database_, std::string(kNodes) + "WHERE instr(folded_name, ?1) > 0 ORDER BY id");
  holding.bind(1, folded);
  readCandidates(readNodes(holding));
}

void EstateRows::readEndingIn(std::string_view path) {
  SqliteStatement ending(
      database_, std::string(kNodes) + "WHERE substr(path, -length(?1)) = ?1 COLLATE NOCASE ORDER BY id");
  const std::string end = "/" + std::string(path);
  ending.bind(1, end);
  readCandidates(readNodes(ending));
}

void EstateRows::readNearest(std::string_view name) {
  std::multimap<std::size_t, std::string> near;
  NameDistance distanceOf(name);
  SqliteStatement names(database_, "SELECT DISTINCT folded_name FROM nodes");
  while (names.next())
    if (const auto distance = distanceOf.to(names.text(0))) near.emplace(*distance, names.text(0));
  std::unordered_set<std::string> told;  // of several that are called alike, one is told
  std::size_t reached = 0;
  for (const auto& [distance, folded] : near) {
    if (told.size() >= kNearest && distance > reached) break;
    reached = distance;
    byName_.bind(1, folded);
    for (const std::int64_t id : readNodes(byName_))
      if (const StoredNode& node = nodes_.at(id); !isCopyKind(node.kind)) told.insert(node.path);
  }
  readOwners();
}

/// Which of several nodes of a name is meant, is told by what they belong to and by the edges between them.
void EstateRows::readCandidates(const Ids& found) {
  for (const std::int64_t id : found) edgesAt(id, LineageDirection::upstream);
  readOwners();
}

void EstateRows::readWalk(std::span<const std::int64_t> starts, LineageWalk walk) {
  Ids parts;
  for (const std::int64_t start : starts) {
    visit(start, 0);
    for (const std::int64_t twin : twinsOf(nodes_.at(start))) {
      const NodeKind kind = nodes_.at(twin).kind;
      walk.members |= startsWithMembers(kind);
      if (kind == NodeKind::cube) continue;  // its edges lead to all that it shows
      const Ids some = partsOf(twin);
      parts.insert(parts.end(), some.begin(), some.end());
    }
  }
  if (walk.depth > 0)
    for (const std::int64_t part : parts) visit(part, 1);
  for (std::size_t i = 0; i < queue_.size(); ++i) {
    const std::uint32_t distance = distances_.at(queue_[i]);
    if (distance <= walk.depth) expand(queue_[i], distance, walk);
  }
  readOwners();
  if (walk.direction == LineageDirection::downstream) readPerspectives();
  readOriginals();
}

void EstateRows::visit(std::int64_t id, std::uint32_t distance) {
  const StoredNode* found = node(id);
  if (!found || distances_.contains(id)) return;
  for (const std::int64_t twin : twinsOf(*found))
    if (distances_.try_emplace(twin, distance).second) queue_.push_back(twin);
}

void EstateRows::expand(std::int64_t id, std::uint32_t distance, const LineageWalk& walk) {
  const bool upstream = walk.direction == LineageDirection::upstream;
  for (const StoredEdge* edge : edgesAt(id, walk.direction)) {
    // Whether the start is what a perspective shows, the walk itself finds out.
    if (followOf(edge->kind, edge->from == edge->to, edge->toKind, walk) != Follow::no)
      visit(upstream ? edge->from : edge->to, distance + 1);
  }
}

void EstateRows::readOwners() {
  Ids missing;
  for (const auto& [id, node] : nodes_)
    if (node.owner != 0 && !nodes_.contains(node.owner)) missing.push_back(node.owner);
  for (std::size_t i = 0; i < missing.size(); ++i) {
    const StoredNode* owner = node(missing[i]);
    if (owner && owner->owner != 0 && !nodes_.contains(owner->owner)) missing.push_back(owner->owner);
  }
}

/// The perspectives of the cubes that the answer reaches.
void EstateRows::readPerspectives() {
  Ids cubes;
  for (const auto& [id, node] : nodes_)
    if (node.kind == NodeKind::cube) cubes.push_back(id);
  SqliteStatement perspectives(
      database_, std::string(kNodes) + "WHERE owner_id = ?1 AND kind = 'perspective' ORDER BY id");
  SqliteStatement whole(database_,
                        std::string(kEdges) + "WHERE e.from_id = ?1 AND e.to_id = ?2 ORDER BY e.rowid");
  for (const std::int64_t cube : cubes) {
    perspectives.bind(1, cube);
    for (const std::int64_t perspective : readNodes(perspectives)) {
      whole.bind(1, cube);
      whole.bind(2, perspective);
      while (whole.next()) addEdge(whole);
    }
  }
}

void EstateRows::readOriginals() {
  Ids copies;
  for (const auto& [id, node] : nodes_)
    if (isOriginalsCopy(node.kind)) copies.push_back(id);
  for (std::size_t i = 0; i < copies.size(); ++i) {
    for (const StoredEdge* edge : edgesAt(copies[i], LineageDirection::upstream)) {
      if (edge->kind != EdgeKind::direct || nodes_.contains(edge->from)) continue;
      const StoredNode* source = node(edge->from);
      if (source && isOriginalsCopy(source->kind)) copies.push_back(edge->from);
    }
  }
  readOwners();
}

void EstateRows::readNotes() {
  SqliteStatement query(database_, "SELECT model_id, text FROM warnings WHERE origin = 'note' ORDER BY id");
  while (query.next())
    if (models_.contains(query.number(0))) notes_[query.number(0)].emplace_back(query.text(1));
}

EstateRows::Ids EstateRows::readNodes(SqliteStatement& statement) {
  Ids ids;
  while (statement.next())
    if (const StoredNode* node = addNode(statement)) ids.push_back(node->id);
  return ids;
}

const StoredNode* EstateRows::addNode(const SqliteStatement& row) {
  if (!models_.contains(row.number(1))) return nullptr;
  const auto [place, isNew] = nodes_.try_emplace(row.number(0));
  StoredNode& node = place->second;
  if (!isNew) return &node;
  node.id = row.number(0);
  node.model = row.number(1);
  node.owner = row.number(2);
  node.cube = row.number(3);
  node.kind = nodeKindIn(row.text(4));
  int column = 4;
  for (std::string* text : {&node.name, &node.qualifiedName, &node.path, &node.server, &node.database,
                            &node.schema, &node.expression, &node.language, &node.aggregation, &node.meeting})
    *text = row.text(++column);
  node.hidden = row.number(column + 1) != 0;
  node.unique = row.number(column + 2) != 0;
  readOpenNames(node);
  if (readsModels_ && isReadable(node.kind)) readDefinitionId(node);
  return &node;
}

void EstateRows::readDefinitionId(StoredNode& node) {
  definitionId_.bind(1, node.id);
  while (definitionId_.next()) node.definitionId = definitionId_.text(0);
}

void EstateRows::readOpenNames(StoredNode& node) {
  openNames_.bind(1, node.id);
  while (openNames_.next()) {
    node.openNames.push_back({std::string(openNames_.text(0)),
                              openNameStateOf(openNames_.text(1)).value_or(OpenNameState::mistake),
                              std::string(openNames_.text(2))});
  }
}

const StoredNode* EstateRows::node(std::int64_t id) {
  if (const auto known = nodes_.find(id); known != nodes_.end()) return &known->second;
  byId_.bind(1, id);
  readNodes(byId_);
  const auto found = nodes_.find(id);
  return found == nodes_.end() ? nullptr : &found->second;
}

void EstateRows::requireSound() const {
  std::unordered_map<std::int64_t, std::int64_t> reachedFrom;  // nodes, and the one whose owners led there
  for (const auto& [start, node] : nodes_) {
    const StoredNode* at = &node;
    while (at->owner != 0 && reachedFrom.try_emplace(at->id, start).second) {
      const auto owner = nodes_.find(at->owner);
      if (owner == nodes_.end() || owner->second.model != at->model)
        database_.failWith("the table nodes is damaged: row " + std::to_string(at->id) + " has no owner");
      at = &owner->second;
      if (const auto known = reachedFrom.find(at->id); known != reachedFrom.end() && known->second == start)
        database_.failWith("the table nodes is damaged: row " + std::to_string(at->id) + " lies in itself");
    }
  }
  for (const auto& [place, edge] : edges_) {
    const auto from = nodes_.find(edge.from);
    const auto to = nodes_.find(edge.to);
    if (from != nodes_.end() && to != nodes_.end() && from->second.model != to->second.model)
      database_.failWith("the table edges is damaged: row " + std::to_string(place) + " leaves its model");
  }
}

EstateRows::Ids EstateRows::partsOf(std::int64_t id) {
  byOwner_.bind(1, id);
  return readNodes(byOwner_);
}

/// The node itself among them. What models read of another one is there with what that has of its name or ID;
/// whether they are one, the graph of all tells.
EstateRows::Ids EstateRows::twinsOf(const StoredNode& node) {
  const std::int64_t id = node.id;
  const std::string meeting = node.meeting;
  std::vector<std::string> keys = partKeysOf(node);
  if (keys.empty() && !meeting.empty()) {
    byMeeting_.bind(1, meeting);
    return readNodes(byMeeting_);
  }
  Ids twins;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const Ids readers = readersOf(keys[i]);
    if (readers.empty()) continue;
    twins.insert(twins.end(), readers.begin(), readers.end());
    for (const std::int64_t part : modelParts(nodes_.at(readers.front()), keys[i])) {
      twins.push_back(part);
      // What is read by its name may be linked by its ID as well.
      for (std::string& key : partKeysOf(nodes_.at(part)))
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(std::move(key));
    }
  }
  return twins.empty() ? Ids{id} : twins;
}

/// What models over others read of a part.
EstateRows::Ids EstateRows::readersOf(std::string_view partKey) {
  const auto [from, to] = readPartRange(partKey);
  byPart_.bind(1, from);
  byPart_.bind(2, to);
  return readNodes(byPart_);
}

/// What has this key in a model that is called as the reader says.
EstateRows::Ids EstateRows::modelParts(const StoredNode& reader, const std::string& partKey) {
  const std::string name = foldedName(reader.name);
  const auto [begin, end] = modelsByName_.equal_range(foldedName(reader.database));
  Ids parts;
  for (auto model = begin; model != end; ++model) {
    byModelAndName_.bind(1, name);
    byModelAndName_.bind(2, model->second);
    Ids some = readNodes(byModelAndName_);
    const auto [first, last] = definitionIdsOf(model->second).equal_range(name);
    for (auto called = first; called != last; ++called)
      if (node(called->second)) some.push_back(called->second);
    std::sort(some.begin(), some.end());
    some.erase(std::unique(some.begin(), some.end()), some.end());
    parts.insert(parts.end(), some.begin(), some.end());
  }
  std::erase_if(parts, [&](std::int64_t id) {
    const std::vector<std::string> keys = partKeysOf(nodes_.at(id));
    return std::find(keys.begin(), keys.end(), partKey) == keys.end();
  });
  return parts;
}

/// The nodes of a model are a range of all, whose settings are read at once.
const std::unordered_multimap<std::string, std::int64_t>& EstateRows::definitionIdsOf(std::int64_t model) {
  const auto [known, isNew] = definitionIds_.try_emplace(model);
  if (!isNew) return known->second;
  SqliteStatement ids(database_,
                      "SELECT s.value, s.node_id FROM models m JOIN settings s ON s.node_id BETWEEN "
                      "m.first_node AND m.last_node WHERE m.id = ?1 AND +s.name = 'ID'");
  ids.bind(1, model);
  while (ids.next()) known->second.emplace(foldedName(ids.text(0)), ids.number(1));
  return known->second;
}

/// The keys of what models over others may read, as WalkGraph::partKeys() gives them, or of what they do
/// read; none for everything else, and where no model is over another one.
std::vector<std::string> EstateRows::partKeysOf(const StoredNode& node) {
  if (!readsModels_) return {};
  if (!node.meeting.empty()) {
    const std::string_view read = partKeyIn(node.meeting);
    return read.empty() ? std::vector<std::string>() : std::vector{std::string(read)};
  }
  if (!isReadable(node.kind)) return {};
  const auto named = [](const StoredNode* one) {
    if (!one) return DefinedName();
    return DefinedName{one->name, one->definitionId.empty() ? one->name : one->definitionId};
  };
  return partKeys(models_.at(node.model),
                  {node.kind, named(&node), named(this->node(node.owner)), named(this->node(node.cube))});
}

std::vector<const StoredEdge*> EstateRows::edgesAt(std::int64_t id, LineageDirection direction) {
  SqliteStatement& statement = direction == LineageDirection::upstream ? edgesInto_ : edgesOutOf_;
  statement.bind(1, id);
  std::vector<const StoredEdge*> found;
  while (statement.next()) found.push_back(addEdge(statement));
  return found;
}

const StoredEdge* EstateRows::addEdge(const SqliteStatement& row) {
  const auto [place, isNew] = edges_.try_emplace(row.number(0));
  StoredEdge& edge = place->second;
  if (!isNew) return &edge;
  edge.place = row.number(0);
  edge.from = row.number(1);
  edge.to = row.number(2);
  edge.kind = relationKindOf(row.text(3)).value_or(EdgeKind::direct);
  edge.toKind = nodeKindIn(row.text(4));
  edge.text = row.text(5);
  edge.foundByGraph = row.number(6) != 0;
  edge.replaces = row.number(7) != 0;
  return &edge;
}

}  // namespace tav
