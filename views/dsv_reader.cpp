#include "views/dsv_reader.h"

#include <array>
#include <cassert>
#include <charconv>

#include "framework/bridgelib/types.h"
#include "framework/model/model.h"
#include "views/name_encoding.h"

namespace {

constexpr std::string_view kPropertySpace = "urn:schemas-microsoft-com:xml-msprop";

const TAVDataStoreVersion& viewStore() {
  static const TAVDataStoreVersion version(TAVDataTypeConstants::DATASTORE_MICROSOFT_DSV, 9, 0, 0);
  return version;
}

const TAVDOMElement* child(const TAVDOMElement* element, std::string_view localName) {
  return element ? element->getFirstElementLocal(localName) : nullptr;
}

/// The named xs:element children of `element`, which may be null.
template <class F> void forEachNamed(const TAVDOMElement* element, F visit) {
  if (!element) return;
  for (const TAVDOMElement& part : element->getElements())
    if (part.getLocalName() == "element" && !part.getAttribute("name").empty()) visit(part);
}

/// The list of tables in a schema: the choice of the first element that has one.
const TAVDOMElement* findTables(const TAVDOMElement* schema) {
  if (!schema) return nullptr;
  for (const TAVDOMElement& element : schema->getElements()) {
    if (element.getLocalName() != "element") continue;
    if (const TAVDOMElement* choice = child(child(&element, "complexType"), "choice")) return choice;
  }
  return nullptr;
}

/// The first of the texts that is not empty.
std::string_view firstOf(std::string_view a, std::string_view b) {
  return a.empty() ? b : a;
}

/// A length in characters; 0 for what is no length, or none that the model can hold.
std::int32_t lengthOf(std::string_view text) {
  std::int32_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  return error == std::errc() && end == text.data() + text.size() && length > 0 ? length : 0;
}

}  // namespace

/// What a definition says of a table or column beside its schema.
class TAVDsvReader::Properties {
 public:
  explicit Properties(const TAVDOMElement& element) {
    for (const tav::DomAttribute& attribute : element.getAttributes()) {
      if (attribute.name->space != kPropertySpace) continue;
      for (const Row& row : kRows)
        if (row.name == attribute.name->local) this->*row.value = attribute.value;
    }
  }

  std::string_view friendlyName, description, isLogical;
  std::string_view dbTableName, dbSchemaName, tableType, queryDefinition, dataSourceId;
  std::string_view dbColumnName, computedColumnExpression;

 private:
  struct Row {
    std::string_view name;
    std::string_view Properties::*value;
  };
  static const std::array<Row, 10> kRows;
};

const std::array<TAVDsvReader::Properties::Row, 10> TAVDsvReader::Properties::kRows{
    {{"FriendlyName", &Properties::friendlyName},
     {"Description", &Properties::description},
     {"IsLogical", &Properties::isLogical},
     {"DbTableName", &Properties::dbTableName},
     {"DbSchemaName", &Properties::dbSchemaName},
     {"TableType", &Properties::tableType},
     {"QueryDefinition", &Properties::queryDefinition},
     {"DataSourceID", &Properties::dataSourceId},
     {"DbColumnName", &Properties::dbColumnName},
     {"ComputedColumnExpression", &Properties::computedColumnExpression}}};

TAVDsvReader::TAVDsvReader(TAVStoreModel* model, TAVLog* log, bool readAllSources, bool keepIds,
                           std::shared_ptr<tav::ConnectionIndex> connections)
    : model_(model),
      readAllSources_(readAllSources),
      keepIds_(keepIds),
      types_(log, viewStore(), TAVDataTypeConstants::TOOL_MICROSOFT_DSV),
      connections_(std::move(connections)),
      analyzer_(this, log) {
  assert(model);
  if (!connections_) connections_ = std::make_shared<tav::ConnectionIndex>(*model);
}

TAVDsvReader::TAVDsvReader(const TAVDsvReader& other)
    : model_(other.model_),
      readAllSources_(other.readAllSources_),
      keepIds_(other.keepIds_),
      types_(other.types_),
      connections_(other.connections_),
      analyzer_(other.analyzer_) {
  analyzer_.reader_ = this;
}

TAVDsvReader& TAVDsvReader::operator=(const TAVDsvReader& other) {
  if (this == &other) return *this;
  model_ = other.model_;
  readAllSources_ = other.readAllSources_;
  keepIds_ = other.keepIds_;
  types_ = other.types_;
  connections_ = other.connections_;
  analyzer_ = other.analyzer_;
  analyzer_.reader_ = this;
  return *this;
}

tav::Owned<TAVDesignPackage> TAVDsvReader::importDataSourceView(const TAVDOMElement* element) {
  if (!element || element->getTagName() != "DataSourceView") return nullptr;
  auto view = tav::make<TAVDesignPackage>(element->getFirstElementValue("Name"));
  view->description = element->getFirstElementValue("Description");
  view->nativeType = "DataSourceView";
  if (keepIds_) view->nativeId = element->getFirstElementValue("ID");

  const std::string_view source = element->getFirstElementValue("DataSourceID");
  forEachNamed(findTables(child(element->getFirstElement("Schema"), "schema")),
               [&](const TAVDOMElement& part) {
                 auto table = importTable(part, source);
                 if (!table) return;
                 TAVTable& placed = view->addNamespaceElementUniqueName(std::move(table), '/');
                 if (TAVStoreConnection* connection = connections_->find(placed.dataSourceId))
                   tav::link<&TAVStoreConnection::connectionClassifiers>(*connection, placed);
               });
  addLineage(*view);
  return view;
}

tav::Owned<TAVTable> TAVDsvReader::importTable(const TAVDOMElement& element, std::string_view viewSource) {
  const Properties properties(element);
  const std::string_view source = firstOf(properties.dataSourceId, viewSource);
  if (!readAllSources_ && source != viewSource) return nullptr;

  const std::string elementName = tav::decodeName(element.getAttribute("name"));
  const bool isQuery = !properties.queryDefinition.empty();
  // Beside a query the table name is no object of the database: it repeats the friendly name.
  const std::string_view databaseName = isQuery ? std::string_view() : properties.dbTableName;
  const std::string_view physicalName = firstOf(databaseName, elementName);

  auto table = tav::make<TAVTable>(firstOf(properties.friendlyName, physicalName));
  table->setPhysicalName(physicalName);
  table->description = properties.description;
  if (keepIds_) table->nativeId = stringEscape(element.getAttribute("name"));
  table->schemaName = properties.dbSchemaName;
  table->tableType = isQuery ? std::string_view("NamedQuery") : properties.tableType;
  table->query = properties.queryDefinition;
  table->dataSourceId = source;
  forEachNamed(child(child(&element, "complexType"), "sequence"), [&](const TAVDOMElement& part) {
    auto column = importColumn(part);
    column->position = static_cast<std::uint16_t>(table->features.getCount());
    table->addFeatureUniqueName(std::move(column), '/');
  });
  return table;
}

tav::Owned<TAVColumn> TAVDsvReader::importColumn(const TAVDOMElement& element) {
  const Properties properties(element);
  const std::string elementName = tav::decodeName(element.getAttribute("name"));
  const std::string_view physicalName = firstOf(properties.dbColumnName, elementName);

  auto column = tav::make<TAVColumn>(firstOf(properties.friendlyName, physicalName));
  column->setPhysicalName(physicalName);
  column->description = properties.description;
  if (keepIds_) column->nativeId = stringEscape(element.getAttribute("name"));
  column->expression = properties.computedColumnExpression;
  column->structural = properties.computedColumnExpression.empty() && properties.isLogical != "True";
  column->addType(importType(element));
  return column;
}

TAVDerivedType& TAVDsvReader::importType(const TAVDOMElement& column) {
  std::string_view native = column.getAttribute("type");
  std::int32_t length = 0;
  if (native.empty()) {
    if (const TAVDOMElement* restriction = child(child(&column, "simpleType"), "restriction")) {
      native = restriction->getAttribute("base");
      if (const TAVDOMElement* facet = child(restriction, "maxLength"))
        length = lengthOf(facet->getAttribute("value"));
    }
  }
  return tav::fetchDerivedType(*model_, types_.getImportTypeName(native), native, length);
}

TAVString TAVDsvReader::stringEscape(std::string_view text) {
  return tav::encodeName(text);
}

TAVString TAVDsvReader::stringUnescape(std::string_view name) {
  return tav::decodeName(name);
}
