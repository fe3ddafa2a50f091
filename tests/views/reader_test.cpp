#include <gtest/gtest.h>

#include <sstream>

#include "framework/dom/dom.h"
#include "framework/model/model.h"
#include "tests/support/corpus.h"
#include "views/dsv_reader.h"

namespace {

using tav::test::escape;

/// `label` with the text, unless there is none.
std::string field(const char* label, const TAVString& text) {
  return text.empty() ? "" : " " + std::string(label) + "=" + escape(text.view());
}

/// The features that feed one, and what a query reads of the database for it.
std::string lineage(const TAVFeature& feature, const TAVString& querySources) {
  std::string text;
  if (const TAVFeatureMap* map = feature.getDestinationOfFeatureMap()) {
    text = field("as", map->operation) + " <-";
    for (const TAVFeature& source : map->sourceFeatures)
      text += " " + source.classifier->getName().str() + "." + source.getName().str();
  }
  return text + field("database", querySources);
}

void showColumn(std::ostream& out, const TAVColumn& column) {
  const auto* type = tav::as<TAVDerivedType>(column.type.get());
  out << "    " << column.position << " " << column.getName().view() << ": " << type->getName().view()
      << (column.structural ? "" : " computed") << field("id", column.nativeId)
      << field("column", column.physicalName) << field("description", column.description)
      << field("expression", column.expression) << lineage(column, column.querySources) << "\n";
}

void showTable(std::ostream& out, const TAVTable& table) {
  out << "  " << (table.tableType.empty() ? "?" : table.tableType.str()) << " " << table.getName().view()
      << field("id", table.nativeId) << field("table", table.physicalName)
      << field("schema", table.schemaName) << field("source", table.dataSourceId)
      << field("description", table.description) << field("query", table.query)
      << field("database", table.querySources) << "\n";
  for (const TAVFeature& feature : table.features) {
    if (const auto* condition = tav::as<TAVCondition>(&feature)) {
      out << "    " << condition->getName().view() << field("column", condition->physicalName)
          << field("expression", condition->expression) << lineage(*condition, condition->querySources)
          << "\n";
    } else {
      showColumn(out, *tav::as<TAVColumn>(&feature));
    }
  }
  for (const TAVClassifierMap& map : table.classifierMaps) {
    out << "    reads";
    for (const TAVClassifier& source : map.sourceClassifiers) out << " " << source.getName().view();
    out << "\n";
  }
}

void showView(std::ostream& out, const TAVDesignPackage& view) {
  out << view.nativeType.view() << " " << view.getName().view() << field("id", view.nativeId)
      << field("description", view.description) << "\n";
  for (const TAVNamespaceElement& element : view.namespaceElements)
    showTable(out, *tav::as<TAVTable>(&element));
}

void showModel(std::ostream& out, const TAVStoreModel& model) {
  for (const TAVStoreConnection& connection : model.storeConnections) {
    out << "connection " << connection.getName().view() << ":";
    for (const TAVClassifier& table : connection.connectionClassifiers)
      out << " " << table.getPath(true).view();
    out << "\n";
  }
}

void showTypes(std::ostream& out, const TAVStoreModel& model) {
  for (const TAVType& object : model.types) {
    const auto* type = tav::as<TAVDerivedType>(&object);
    if (!type) continue;
    out << "type " << type->getName().view() << field("data", type->dataType)
        << field("native", type->nativeDataType) << " length=" << type->length
        << field("physical", type->physicalName) << field("base", type->derivedFromConcreteType->getName())
        << "\n";
  }
}

/// Reads the views of a database. A Connection element makes a store connection with its text as ID;
/// OwnSourceOnly, WithoutIds and ShowTypes switch on what they are called.
std::string read(const std::string& input) {
  TAVDOM dom(nullptr);
  const TAVDOMElement& root = *dom.parseText(
      "<Database xmlns:xs='http://www.w3.org/2001/XMLSchema' "
      "xmlns:msprop='urn:schemas-microsoft-com:xml-msprop'>" +
          input + "</Database>",
      "view");
  const auto model = tav::make<TAVStoreModel>("model");
  const auto connections = std::make_shared<tav::ConnectionIndex>(*model);
  std::ostringstream out;
  for (const TAVDOMElement& element : root.getElements()) {
    if (element.getTagName() == "Connection") {
      auto made = tav::make<TAVStoreConnection>("c" + std::to_string(model->storeConnections.getCount()));
      made->nativeId = element.getValue();
      model->addStoreConnection(std::move(made));
    }
    if (!element.getTagName().ends_with("View")) continue;
    TAVDsvReader reader(model.get(), nullptr, !root.getFirstElement("OwnSourceOnly"),
                        !root.getFirstElement("WithoutIds"), connections);
    auto view = reader.importDataSourceView(&element);
    if (view)
      showView(out, model->addDesignPackageUniqueName(std::move(view), '/'));
    else
      out << "no view\n";
  }
  showModel(out, *model);
  if (root.getFirstElement("ShowTypes")) showTypes(out, *model);
  std::string text = out.str();
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

TEST(DsvReader, Corpus) {
  tav::test::checkCorpus("views/views.txt", read);
}

TEST(DsvReader, WithoutAnElementThereIsNoView) {
  const auto model = tav::make<TAVStoreModel>("model");
  EXPECT_EQ(TAVDsvReader(model.get(), nullptr, true, true).importDataSourceView(nullptr), nullptr);
}

TEST(DsvReader, PositionsAreOf16Bits) {
  std::string columns;
  for (int i = 0; i < 65538; ++i) columns += "<xs:element name='c' type='xs:int'/>";
  TAVDOM dom(nullptr);
  const std::string text =
      "<DataSourceView xmlns:xs='http://www.w3.org/2001/XMLSchema'><Schema><xs:schema><xs:element "
      "name='d'><xs:complexType><xs:choice><xs:element name='t'><xs:complexType><xs:sequence>" +
      columns +
      "</xs:sequence></xs:complexType></xs:element></xs:choice></xs:complexType></xs:element></xs:schema></"
      "Schema></DataSourceView>";
  const auto model = tav::make<TAVStoreModel>("model");
  const auto view =
      TAVDsvReader(model.get(), nullptr, true, true).importDataSourceView(dom.parseText(text, "view"));
  const auto* table = tav::as<TAVTable>(view->namespaceElements.first());
  EXPECT_EQ(table->features[65535]->position, 65535);
  EXPECT_EQ(table->features[65536]->position, 0);
  EXPECT_EQ(table->features[65536]->getName(), "c/65537");
  EXPECT_EQ(table->features[65537]->position, 1);
}

}  // namespace
