#include "reader/elements/references.h"

#include "framework/model/roles.h"
#include "views/dsv_reader.h"

namespace tav {
namespace {

/// Whether the model itself says that this feature is fed from that one.
bool hasSource(const TAVModelObject* object, const TAVFeature& source) {
  const auto* feature = as<TAVFeature>(object);
  const TAVFeatureMap* map = feature ? feature->getDestinationOfFeatureMap() : nullptr;
  return map && map->sourceFeatures.contains(source);
}

/// An ID of a data source that means the database itself.
constexpr std::string_view kThisDatabase = ".";

}  // namespace

void IdReferences::relate(RelationKind kind, ItemId from, ItemId to, std::string_view text) {
  if (text.empty()) {
    static_assert(kRelationKindCount < 64);
    constexpr unsigned kItemBits = 29;  // more items than any document of 4 GB of text has
    const std::uint64_t key =
        (static_cast<std::uint64_t>(kind) << (2 * kItemBits)) | (std::uint64_t{from} << kItemBits) | to;
    if (!known_.insert(key)) return;
  }
  run_.details->relate(kind, from, to, text);
}

void IdReferences::add(const IdReference& reference) {
  references_.push_back({reference.id.data(), reference.scope,
                         static_cast<std::uint32_t>(reference.id.size()), reference.item, wordsOf(reference),
                         reference.relation, reference.space});
}

/// Tags are kept once for the document, and texts for many relations, so that they are known again by where
/// they lie.
std::uint32_t IdReferences::wordsOf(const IdReference& reference) {
  const auto number = static_cast<std::uint32_t>(words_.size());
  const auto [place, isNew] =
      wordsByPlace_.try_emplace({reference.tag.data(), reference.text.data()}, number);
  if (isNew) words_.push_back({reference.tag, reference.text});
  return place->second;
}

IdReference IdReferences::whole(const Waiting& waiting) const {
  const Words& words = words_[waiting.words];
  return {waiting.item, waiting.relation, waiting.space, waiting.scope, {waiting.id, waiting.idSize},
          words.tag,    words.text};
}

void IdReferences::resolve() {
  for (; !columns_.empty(); columns_.pop_front()) resolve(columns_.front());
  for (; !references_.empty(); references_.pop_front()) resolve(whole(references_.front()));
}

void IdReferences::resolve(const IdReference& reference) {
  if (reference.space == IdSpace::dataSource && reference.id == kThisDatabase) return;
  // What stands in another database is not what has its ID in this one.
  if (reference.scope->isBeyond && reference.space != IdSpace::dataSource)
    return run_.details->addOpenName(reference.item, reference.id, OpenNameState::beyond, reference.tag);
  const auto found = ids_.find(reference.space, *reference.scope, reference.id);
  if (!found) return addMissing(reference);
  // What is shown as it is, the model says.
  if (reference.relation != RelationKind::direct && *found != reference.item)
    relate(reference.relation, *found, reference.item, reference.text);
}

/// What does not exist is an open name, once for an item: an action may list fifty columns of a cube that is
/// gone. Its other IDs, and those that only what is missing could hold, become settings, so that none is
/// lost.
void IdReferences::addMissing(const IdReference& reference) {
  Details& details = *run_.details;
  if (!ids_.hasPlace(reference.space, *reference.scope) ||
      !isNewMissing(reference.item, std::string(reference.id)))
    return details.set(reference.item, reference.tag, reference.id);
  details.addOpenName(reference.item, reference.id, OpenNameState::mistake,
                      ids_.nearest(reference.space, *reference.scope, reference.id));
}

void IdReferences::resolve(const ColumnReference& reference) {
  Details& details = *run_.details;
  if (reference.column.empty()) {
    if (const TAVClassifier* table = run_.columns.findTable(reference.view, reference.table))
      return relate(reference.relation, details.itemOf(*table), reference.item, reference.text);
    return details.addOpenName(reference.item, reference.table, OpenNameState::mistake,
                               nearestTable(reference));
  }
  if (const TAVFeature* column = run_.columns.find(reference.view, reference.table, reference.column)) {
    if (reference.relation == RelationKind::aggregated &&
        hasSource(details.item(reference.item).object, *column))
      return;
    return relate(reference.relation, details.itemOf(*column), reference.item, reference.text);
  }
  const std::string name = std::string(reference.table) + "." + std::string(reference.column);
  if (isNewMissing(reference.item, name))
    details.addOpenName(reference.item, name, OpenNameState::mistake, nearestColumn(reference));
}

std::string IdReferences::nearestColumn(const ColumnReference& reference) {
  const TAVClassifier* table = run_.columns.findTable(reference.view, reference.table);
  if (!table) {
    const std::string_view nearest = nearestTable(reference);
    return nearest.empty() ? std::string() : std::string(nearest).append(".").append(reference.column);
  }
  const auto [place, isNew] = columnSpellings_.try_emplace(table);
  if (isNew)
    for (const TAVFeature& column : table->features)
      place->second.add(TAVDsvReader::stringUnescape(column.nativeId));
  const std::string_view nearest = place->second.nearest(reference.column);
  return nearest.empty() ? std::string() : std::string(reference.table).append(".").append(nearest);
}

std::string_view IdReferences::nearestTable(const ColumnReference& reference) {
  const auto [place, isNew] = tableSpellings_.try_emplace(reference.view);
  const TAVDesignPackage* folder = isNew ? run_.model->designPackages.get(label::kDataSourceViews) : nullptr;
  if (folder) {
    for (const TAVNamespaceElement& element : folder->namespaceElements) {
      const auto* view = as<TAVDesignPackage>(&element);
      if (!view || view->nativeId.view() != reference.view) continue;
      for (const TAVNamespaceElement& table : view->namespaceElements)
        place->second.add(TAVDsvReader::stringUnescape(table.nativeId));
    }
  }
  return place->second.nearest(reference.table);
}

}  // namespace tav
