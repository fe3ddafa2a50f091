#include <gtest/gtest.h>

#include "framework/dsv/dsv_reader.h"
#include "framework/model/tree_walk.h"
#include "tests/support/checked_import.h"

namespace {

/// Text as it stands in an element or attribute, line ends included.
std::string inXml(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || std::string_view("<>&\"'").find(c) != std::string_view::npos)
      result.append("&#").append(std::to_string(static_cast<int>(c))).append(";");
    else
      result += c;
  }
  return result;
}

/// A definition in which everything has the same name, and a database column feeds the attribute.
std::string definitionOf(const std::string& name) {
  const std::string id = "<ID>" + inXml(name) + "</ID>";
  const std::string both = id + "<Name>" + inXml(name) + "</Name>";
  const std::string escaped = inXml(TAVDsvReader::stringEscape(name));
  const auto viewElement = [&](const std::string& inside) {
    return "<xs:element name=\"" + escaped + "\"><xs:complexType>" + inside +
           "</xs:complexType></xs:element>";
  };
  return "<Database xmlns:xs='http://www.w3.org/2001/XMLSchema'>" + both + "<DataSources><DataSource>" +
         both + "</DataSource></DataSources><DataSourceViews><DataSourceView>" + both + "<DataSourceID>" +
         inXml(name) + "</DataSourceID><Schema><xs:schema>" +
         viewElement("<xs:choice>" + viewElement("<xs:sequence>" + viewElement("") + "</xs:sequence>") +
                     "</xs:choice>") +
         "</xs:schema></Schema></DataSourceView></DataSourceViews><Dimensions><Dimension>" + both +
         "<Source><DataSourceViewID>" + inXml(name) + "</DataSourceViewID></Source><Attributes><Attribute>" +
         both + "<NameColumn><Source><TableID>" + escaped + "</TableID><ColumnID>" + escaped +
         "</ColumnID></Source></NameColumn></Attribute></Attributes><Hierarchies><Hierarchy>" + both +
         "<Levels><Level>" + both + "<SourceAttributeID>" + inXml(name) +
         "</SourceAttributeID></Level></Levels></Hierarchy></Hierarchies></Dimension></Dimensions></"
         "Database>";
}

struct NameCounter {
  std::string_view name;
  int named = 0;
  int columnsThatFeed = 0;

  void enter(const TAVObject& object) {
    if (object.getName() == name) ++named;
    if (const auto* map = tav::as<TAVFeatureMap>(&object))
      columnsThatFeed += static_cast<int>(map->sourceFeatures.getCount());
  }
  void enterRole(const tav::LinkRow& /*row*/) {}
  void leaveRole(const tav::LinkRow& /*row*/) {}
  void leave(const TAVObject& /*object*/) {}
};

std::vector<std::string> names() {
  std::vector<std::string> all{"/",           "//2",      "a/b",      "\"quoted\"", "'quoted'",
                               "[x]",         "]]",       "&[x].[y]", "<&>",        "&amp;",
                               "a:b",         " blanks ", " ",        "tab\t",      "a\r\nb",
                               "_x0001_",     "_x",       "1",        "-.",         "a;b=c",
                               "$(1 x)",      "%s%n",     "\\",       "\xC2\x85",   "\xE2\x80\xA8",
                               "\xEF\xBF\xBD"};
  for (unsigned plane = 1; plane <= 16; ++plane) {
    const unsigned high = 0xF0U | (plane >> 2U), next = 0x80U | ((plane & 3U) << 4U);
    all.push_back({'a', static_cast<char>(high), static_cast<char>(next), '\x80', '\x80'});  // its first
    all.push_back({'a', static_cast<char>(high), static_cast<char>(next | 15U), '\xBF', '\xBD'});  // its last
  }
  return all;
}

TEST(BadNames, AreKeptInEveryPlaceAndFoundAgain) {
  constexpr int kObjects = 10;  // from the database down to the level's attribute
  tav::test::DocumentImporter importer;
  for (const std::string& name : names()) {
    SCOPED_TRACE(tav::test::escape(name, true));
    const tav::test::Imported result = importer.import(definitionOf(name));
    ASSERT_EQ(result.error, "");
    NameCounter counter{name};
    tav::walkTree(*result.model, counter);
    EXPECT_EQ(counter.named, kObjects);
    EXPECT_EQ(counter.columnsThatFeed, 1);
  }
}

}  // namespace
