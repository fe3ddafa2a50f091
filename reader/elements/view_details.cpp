#include "reader/elements/view_details.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "framework/std/text.h"
#include "reader/run/vocabulary.h"
#include "views/dsv_reader.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

constexpr std::string_view kDesignTimeName = "design-time-name";
constexpr std::string_view kForeignKey = "foreign key";
constexpr std::string_view kReferencedKey = "referenced key";

/// Attributes of tables and columns that the model takes over.
constexpr std::array<std::string_view, 10> kInModel{
    "FriendlyName", "DbTableName",    "DbSchemaName", "DbColumnName",
    "Description",  "TableType",      "DataSourceID", "ComputedColumnExpression",
    "type",         "QueryDefinition"};

/// The value of an attribute of this local name, whatever its prefix; empty when there is none.
std::string_view valueOf(const TAVDOMElement& element, std::string_view name) {
  for (const DomAttribute& attribute : element.getAttributes())
    if (attribute.name->local == name) return attribute.value;
  return {};
}

bool isInModel(const TAVDOMElement& element, std::string_view attribute) {
  if (std::find(kInModel.begin(), kInModel.end(), attribute) != kInModel.end()) return true;
  // What the view makes itself is logical, as its query or expression tells.
  return attribute == "IsLogical" && (!valueOf(element, "QueryDefinition").empty() ||
                                      !valueOf(element, "ComputedColumnExpression").empty());
}

/// The table that a selector means: ".//dbo_Sales".
std::string_view tableOf(const TAVDOMElement& constraint) {
  const TAVDOMElement* selector = constraint.getFirstElementLocal("selector");
  std::string_view path = selector ? selector->getAttribute("xpath") : std::string_view();
  if (path.starts_with(".//")) path.remove_prefix(3);
  return path;
}

std::vector<std::string_view> fieldsOf(const TAVDOMElement& constraint) {
  std::vector<std::string_view> fields;
  for (const TAVDOMElement& part : constraint.getElements())
    if (part.getLocalName() == "field") fields.push_back(part.getAttribute("xpath"));
  return fields;
}

/// Names of columns, which are written without blanks, behind each other.
std::vector<std::string_view> namesIn(std::string_view text) {
  std::vector<std::string_view> names;
  while (!(text = trimmed(text)).empty()) {
    const std::size_t blank = std::min(text.find(' '), text.size());
    names.push_back(text.substr(0, blank));
    text.remove_prefix(blank);
  }
  return names;
}

/// Reads the schema of one view. Whatever is no table, column, key or relationship is said of the view.
class SchemaReader {
 public:
  SchemaReader(ImportRun& run, IdReferences& references, std::string_view viewId, ItemId view)
      : run_(run), details_(*run.details), references_(references), viewId_(viewId), view_(view) {}

  void read(const TAVDOMElement& schema) {
    std::vector<Place> open{{&schema, {}, {}}};
    while (!open.empty()) {
      const Place place = open.back();
      open.pop_back();
      const std::string_view table = readElement(place);
      const auto parts = place.element->getElements();
      for (std::size_t i = parts.size(); i > 0; --i)
        open.push_back({&parts[i - 1], place.element->getLocalName(), table});
    }
    for (const TAVDOMElement* reference : keyReferences_) readKeyReference(*reference);
  }

 private:
  struct Place {
    const TAVDOMElement* element;
    std::string_view parent;
    std::string_view table;  // that the element is in
  };

  /// The table that its parts are in.
  std::string_view readElement(const Place& place) {
    const TAVDOMElement& element = *place.element;
    const std::string_view tag = element.getLocalName();
    if (tag == "element" && place.parent == "choice") {
      readTable(element);
      return element.getAttribute("name");
    }
    if (tag == "element" && place.parent == "sequence")
      readColumn(element, place.table);
    else if (tag == "unique")
      readKey(element);
    else if (tag == "keyref")
      keyReferences_.push_back(&element);
    else if (tag == "Relationship")
      readRelationship(element);
    else if (place.table.empty() && tag != "selector" && tag != "field")
      readAttributes(element, view_, std::string(tag) + ".", {});
    return place.table;
  }

  void readTable(const TAVDOMElement& element) {
    const std::string_view name = element.getAttribute("name");
    const TAVClassifier* table = run_.columns.findTable(viewId_, name);
    const ItemId item = table ? details_.itemOf(*table) : details_.add(ObjectKind::viewTable, view_, name);
    readAttributes(element, item, {}, "name");
    const std::string_view databaseName = valueOf(element, "DbTableName");
    const std::string usual = std::string(valueOf(element, "DbSchemaName")) + "_" + std::string(databaseName);
    const std::string plain = TAVDsvReader::stringUnescape(name).str();
    if (!databaseName.empty() && plain != usual && plain != databaseName) details_.set(item, "ID", name);
    // Beside a query it names nothing in the database, and the model leaves it out.
    if (!valueOf(element, "QueryDefinition").empty() && databaseName != valueOf(element, "FriendlyName"))
      details_.set(item, "DbTableName", databaseName);
  }

  void readColumn(const TAVDOMElement& element, std::string_view table) {
    const std::string_view name = element.getAttribute("name");
    const TAVFeature* column = run_.columns.find(viewId_, table, name);
    if (!column) return;
    if (element.getAttributes().size() <= 1) return;
    ItemId item = kNoItem;
    const auto set = [&](std::string_view setting, std::string_view value) {
      if (item == kNoItem) item = details_.itemOf(*column);
      details_.set(item, setting, value);
    };
    for (const DomAttribute& attribute : element.getAttributes()) {
      const std::string_view local = attribute.name->local;
      if (local == kDesignTimeName)
        details_.passOver(PassedOver::designerLayout);
      else if (local != "name" && !isInModel(element, local))
        set(local, attribute.value);
    }
    if (const std::string_view own = valueOf(element, "DbColumnName");
        !own.empty() && TAVDsvReader::stringUnescape(name) != own)
      set("ID", name);
  }

  /// A key is kept with its table, and its columns relate to that.
  void readKey(const TAVDOMElement& element) {
    const std::string_view tableId = tableOf(element);
    keys_.try_emplace(std::string(element.getAttribute("name")), &element);
    const TAVClassifier* table = run_.columns.findTable(viewId_, tableId);
    const ItemId item = table ? details_.itemOf(*table) : view_;
    const bool isPrimary = valueOf(element, "PrimaryKey") == "true";
    const std::string name = isPrimary ? "PrimaryKey" : "UniqueKey";
    details_.set(item, name, element.getAttribute("name"));
    readAttributes(element, item, name + ".", isPrimary ? "PrimaryKey" : "");
    addColumns(item, RelationKind::key, tableId, fieldsOf(element), {});
  }

  void readKeyReference(const TAVDOMElement& element) {
    const ItemId item = details_.add(ObjectKind::relationship, view_, element.getAttribute("name"));
    readAttributes(element, item, {}, "refer");
    addColumns(item, RelationKind::joins, tableOf(element), fieldsOf(element), kForeignKey);
    const std::string_view refer = element.getAttribute("refer");
    const auto key = keys_.find(std::string(refer));
    if (key == keys_.end()) return details_.addOpenName(item, refer, OpenNameState::mistake);
    addColumns(item, RelationKind::joins, tableOf(*key->second), fieldsOf(*key->second), kReferencedKey);
  }

  void readRelationship(const TAVDOMElement& element) {
    const ItemId item = details_.add(ObjectKind::relationship, view_, element.getAttribute("name"));
    for (const DomAttribute& attribute : element.getAttributes()) {
      const std::string_view name = attribute.name->local;
      const bool isEnd = name == "parent" || name == "child" || name == "parentkey" || name == "childkey";
      if (!isEnd) readAttribute(element, attribute, item, {}, {});
    }
    addColumns(item, RelationKind::joins, valueOf(element, "child"), namesIn(valueOf(element, "childkey")),
               kForeignKey);
    addColumns(item, RelationKind::joins, valueOf(element, "parent"), namesIn(valueOf(element, "parentkey")),
               kReferencedKey);
  }

  void addColumns(ItemId item, RelationKind relation, std::string_view table,
                  const std::vector<std::string_view>& columns, std::string_view text) {
    for (const std::string_view column : columns)
      references_.add(ColumnReference{item, relation, viewId_, table, column, text});
  }

  void readAttributes(const TAVDOMElement& element, ItemId item, const std::string& prefix,
                      std::string_view known) {
    for (const DomAttribute& attribute : element.getAttributes())
      readAttribute(element, attribute, item, prefix, known);
  }

  void readAttribute(const TAVDOMElement& element, const DomAttribute& attribute, ItemId item,
                     const std::string& prefix, std::string_view known) {
    const std::string_view name = attribute.name->local;
    if (attribute.name->written.starts_with("xmlns") || name == "name" || name == known) return;
    if (name == kDesignTimeName) return details_.passOver(PassedOver::designerLayout);
    const bool isTable = prefix.empty() && element.getLocalName() == "element";
    if (!isTable || !isInModel(element, name))
      details_.set(item, prefix + std::string(name), attribute.value);
  }

  ImportRun& run_;
  Details& details_;
  IdReferences& references_;
  std::string_view viewId_;
  ItemId view_;
  std::unordered_map<std::string, const TAVDOMElement*> keys_;
  std::vector<const TAVDOMElement*> keyReferences_;  // may stand in front of their keys
};

}  // namespace

void readViewDetails(ImportRun& run, const TAVDOMElement& database, IdReferences& references) {
  const TAVDOMElement* views = database.getFirstElement(kDataSourceViews);
  if (!views) return;
  for (const TAVDOMElement& view : views->getElements()) {
    const TAVModelObject* object = run.elements.find(view);
    const TAVDOMElement* frame = view.getFirstElement("Schema");
    const TAVDOMElement* schema = frame ? frame->getFirstElementLocal("schema") : nullptr;
    if (object && schema)
      SchemaReader(run, references, view.getFirstElementValue(kId), run.details->itemOf(*object))
          .read(*schema);
  }
}

}  // namespace tav
