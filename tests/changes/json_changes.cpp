#include "tests/changes/json_changes.h"

#include <algorithm>

namespace tav::test {
namespace {

using Json = nlohmann::ordered_json;

/// Null and an empty text stand for what is not there: without them a definition says the same.
bool saysNothing(const Json& value) {
  return value.is_null() || (value.is_string() && value.get_ref<const std::string&>().empty());
}

bool isLeaf(const Json& value) {
  return !value.is_structured() || (value.is_array() && !value.empty() && value.front().is_string());
}

Json otherOf(const Json& value) {
  if (value.is_boolean()) return !value.get<bool>();
  if (value.is_number()) return value == 1 ? 2 : 1;
  if (value.is_string()) return otherValue(value.get<std::string>());
  Json changed = value;
  if (changed.is_array()) changed.back() = otherValue(changed.back().get<std::string>());
  return changed;
}

void erase(Json& document, const Json::json_pointer& pointer) {
  Json& owner = document[pointer.parent_pointer()];
  if (owner.is_array())
    owner.erase(std::stoul(pointer.back()));
  else
    owner.erase(pointer.back());
}

}  // namespace

JsonChanges::JsonChanges(std::string_view document) : document_(Json::parse(document, nullptr, true, true)) {
  findNodes();
  Owners owners;
  for (Place i = 0; i < nodes_.size(); ++i)
    if (!isLeaf(valueOf(i))) owners[kindOfPlace(nodes_[i].path)].push_back(i);
  for (Place i = 1; i < nodes_.size(); ++i) addChangesOf(i, owners);
}

void JsonChanges::findNodes() {
  // Without a command around it, the document is the database.
  nodes_.push_back({std::nullopt, document_.contains("model") ? "database" : "", Json::json_pointer()});
  for (Place i = 0; i < nodes_.size(); ++i) {
    const Json& value = valueOf(i);
    if (isLeaf(value)) continue;
    const Node owner = nodes_[i];
    std::size_t number = 0;
    for (const auto& [key, inner] : value.items()) {
      ++number;
      Node& node = nodes_.emplace_back(Node{i, owner.path, owner.pointer});
      if (value.is_array()) {
        node.pointer /= number - 1;
        node.path += "/each" + (number > 1 ? "[" + std::to_string(number) + "]" : "");
      } else {
        node.pointer /= key;
        node.path += (node.path.empty() ? "" : "/") + key;
      }
    }
  }
}

void JsonChanges::addChangesOf(Place place, const Owners& owners) {
  const Place owner = *nodes_[place].around;
  const bool several = valueOf(owner).is_array();
  if (!saysNothing(valueOf(place))) changes_.push_back({place, Way::removed});
  if (several) changes_.push_back({place, Way::doubled});
  if (isLeaf(valueOf(place)) && !valueOf(place).is_null()) changes_.push_back({place, Way::changed});
  if (several && place + 1 < nodes_.size() && nodes_[place + 1].around == owner &&
      valueOf(place) != valueOf(place + 1))
    changes_.push_back({place, Way::swapped, place + 1});
  if (saysNothing(valueOf(place))) return;
  if (const auto next = nextOwner(place, owners)) changes_.push_back({place, Way::moved, *next});
}

/// What stands once below each owner moves to one that has none.
std::optional<Changes::Place> JsonChanges::nextOwner(Place place, const Owners& owners) const {
  constexpr std::size_t kTries = 50;
  const Place owner = *nodes_[place].around;
  const auto alike = owners.find(kindOfPlace(nodes_[owner].path));
  if (alike == owners.end()) return std::nullopt;
  const std::vector<Place>& all = alike->second;
  std::size_t at = static_cast<std::size_t>(std::upper_bound(all.begin(), all.end(), owner) - all.begin());
  for (std::size_t tries = std::min(all.size(), kTries); tries > 0; --tries, ++at) {
    const Place candidate = all[at % all.size()];
    const Json& value = valueOf(candidate);
    const bool inside = (nodes_[candidate].path + "/").starts_with(nodes_[place].path + "/");
    if (candidate == owner || inside || value.is_array() != valueOf(owner).is_array()) continue;
    if (value.is_array() || !value.contains(nodes_[place].pointer.back())) return candidate;
  }
  return std::nullopt;
}

std::string JsonChanges::without(Place place) const {
  Json document = document_;
  erase(document, nodes_[place].pointer);
  return document.dump();
}

std::string JsonChanges::at(std::size_t i) const {
  const Change& change = changes_[i];
  const Json::json_pointer& pointer = nodes_[change.place].pointer;
  Json document = document_;
  switch (change.way) {
    case Way::removed:
      erase(document, pointer);
      break;
    case Way::doubled: {
      Json& list = document[pointer.parent_pointer()];
      list.insert(list.begin() + std::stol(pointer.back()) + 1, valueOf(change.place));
      break;
    }
    case Way::changed:
      document[pointer] = otherOf(valueOf(change.place));
      break;
    case Way::swapped:
      document[pointer] = valueOf(change.other);
      document[nodes_[change.other].pointer] = valueOf(change.place);
      break;
    case Way::moved: {
      // What is taken out first could give the other owner another place.
      Json& target = document[nodes_[change.other].pointer];
      if (target.is_array())
        target.push_back(valueOf(change.place));
      else
        target[pointer.back()] = valueOf(change.place);
      erase(document, pointer);
      break;
    }
  }
  return document.dump();
}

}  // namespace tav::test
