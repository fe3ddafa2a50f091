#include "host/reports/field_uses.h"

#include <array>
#include <deque>
#include <set>
#include <string_view>
#include <unordered_map>

namespace host {
namespace {

using Json = nlohmann::json;

/// A member of an object; null when there is none.
const Json* member(const Json& json, const char* name) {
  if (!json.is_object()) return nullptr;
  const auto found = json.find(name);
  return found == json.end() ? nullptr : &*found;
}

std::string textOf(const Json* json) {
  return json && json->is_string() ? json->get<std::string>() : std::string();
}

bool isFilterName(std::string_view name) {
  return name == "filters" || name == "filterConfig" || name == "filter" || name == "Where";
}

/// Those of the older form whose value is a text that holds JSON.
bool isWrapped(std::string_view name) {
  return name == "config" || name == "filters";
}

class FieldWalk {
 public:
  explicit FieldWalk(std::vector<FieldUse>& uses) : uses_(uses) {}

  void walk(const Json& root, bool filters) {
    waiting_.push_back({&root, kNoScope, filters, false});
    while (!waiting_.empty()) {
      const Place place = waiting_.back();
      waiting_.pop_back();
      if (place.json->is_object())
        visitObject(place);
      else if (place.json->is_array())
        visitArray(place);
    }
  }

 private:
  static constexpr std::size_t kNoScope = static_cast<std::size_t>(-1);

  struct Place {
    const Json* json;
    std::size_t scope;  // the query around it
    bool filters;
    bool offered;
  };

  /// The tables of a query by the names that it gives them.
  struct Scope {
    std::size_t outer;
    std::unordered_map<std::string, std::string> tables;
  };

  void visitObject(Place place) {
    if (const Json* from = member(*place.json, "From"); from && from->is_array()) openScope(*from, place);
    if (addUse(place)) return;
    // The last is visited first.
    std::vector<Place> inner;
    for (const auto& [name, value] : place.json->items()) {
      const bool filters = place.filters || isFilterName(name);
      if (value.is_string() && isWrapped(name))
        inner.push_back({&unwrapped(value), place.scope, filters, place.offered});
      else if (value.is_structured())
        inner.push_back({&value, place.scope, filters, place.offered});
    }
    waiting_.insert(waiting_.end(), inner.rbegin(), inner.rend());
  }

  void visitArray(const Place& place) {
    for (auto value = place.json->rbegin(); value != place.json->rend(); ++value) {
      // A filter that people may use, and that narrows nothing by itself.
      const bool card = place.filters && (member(*value, "expression") || member(*value, "field"));
      const bool offered = place.offered || (card && !member(*value, "filter"));
      waiting_.push_back({&*value, place.scope, place.filters, offered});
    }
  }

  void openScope(const Json& from, Place& place) {
    Scope& scope = scopes_.emplace_back(Scope{place.scope, {}});
    for (const Json& source : from)
      if (const std::string table = textOf(member(source, "Entity")); !table.empty())
        scope.tables[textOf(member(source, "Name"))] = table;
    place.scope = scopes_.size() - 1;
  }

  /// Text that is no JSON holds nothing.
  const Json& unwrapped(const Json& text) {
    return texts_.emplace_back(Json::parse(text.get_ref<const std::string&>(), nullptr, false));
  }

  /// Whether an object is a field. One that is made of another field (a sum of a column) is read as that.
  bool addUse(const Place& place) {
    struct Form {
      const char* object;
      const char* name;
      FieldUse::Kind kind;
    };
    constexpr std::array<Form, 4> kForms{{{"Column", "Property", FieldUse::Kind::column},
                                          {"Measure", "Property", FieldUse::Kind::measure},
                                          {"PropertyVariationSource", "Property", FieldUse::Kind::column},
                                          {"Hierarchy", "Hierarchy", FieldUse::Kind::hierarchy}}};
    const Json* level = member(*place.json, "HierarchyLevel");
    const Json* outer = level ? member(*level, "Expression") : place.json;
    if (!outer) return false;
    for (const Form& form : kForms) {
      const Json* field = member(*outer, form.object);
      const Json* expression = field ? member(*field, "Expression") : nullptr;
      const Json* source = expression ? member(*expression, "SourceRef") : nullptr;
      if (!source) continue;
      FieldUse use{form.kind, tableOf(*source, place.scope), textOf(member(*field, form.name)), {}};
      if (level) use.level = textOf(member(*level, "Level"));
      use.filters = place.filters;
      use.offered = place.offered;
      use.ofReport = textOf(member(*source, "Schema")) == "extension";
      if (!use.name.empty() && met_.insert(use).second) uses_.push_back(std::move(use));
      return true;
    }
    return false;
  }

  /// The table that is named, or called by the name that a query around gives it.
  std::string tableOf(const Json& source, std::size_t scope) const {
    if (std::string table = textOf(member(source, "Entity")); !table.empty()) return table;
    const std::string name = textOf(member(source, "Source"));
    for (; scope != kNoScope; scope = scopes_[scope].outer)
      if (const auto found = scopes_[scope].tables.find(name); found != scopes_[scope].tables.end())
        return found->second;
    return {};
  }

  std::vector<FieldUse>& uses_;
  std::set<FieldUse> met_;
  std::vector<Place> waiting_;
  std::deque<Scope> scopes_;
  std::deque<Json> texts_;
};

}  // namespace

void appendFieldUses(const Json& json, bool filters, std::vector<FieldUse>& uses) {
  FieldWalk(uses).walk(json, filters);
}

}  // namespace host
