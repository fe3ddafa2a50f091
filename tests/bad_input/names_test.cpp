#include <gtest/gtest.h>

#include "framework/model/tree_walk.h"
#include "tests/support/checked_import.h"
#include "views/dsv_reader.h"

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

/// Elements in one another, the outermost first, around `inside`.
std::string nested(std::initializer_list<const char*> tags, const std::string& inside) {
  std::string front;
  std::string back;
  for (const std::string tag : tags) {
    front.append("<").append(tag).append(">");
    back.insert(0, "</" + tag + ">");
  }
  return front + inside + back;
}

/// A definition in which everything has the same name and ID; a database column feeds an attribute and a
/// measure.
std::string definitionOf(const std::string& name) {
  const std::string written = inXml(name);
  const std::string both = nested({"ID"}, written) + nested({"Name"}, written);
  const std::string escaped = inXml(TAVDsvReader::stringEscape(name));
  const auto viewElement = [&](const std::string& inside) {
    return "<element name=\"" + escaped + "\">" + nested({"complexType"}, inside) + "</element>";
  };
  const std::string tables = nested({"choice"}, viewElement(nested({"sequence"}, viewElement(""))));
  const std::string view = nested({"Source", "DataSourceViewID"}, written);
  const std::string column = nested({"Source"}, nested({"TableID"}, escaped) + nested({"ColumnID"}, escaped));
  const std::string level = both + nested({"SourceAttributeID"}, written);
  return nested(
      {"Database"},
      both + nested({"DataSources", "DataSource"}, both) +
          nested(
              {"DataSourceViews", "DataSourceView"},
              both + nested({"DataSourceID"}, written) + nested({"Schema", "schema"}, viewElement(tables))) +
          nested({"Dimensions", "Dimension"},
                 both + view + nested({"Attributes", "Attribute"}, both + nested({"NameColumn"}, column)) +
                     nested({"Hierarchies", "Hierarchy"}, both + nested({"Levels", "Level"}, level))) +
          nested({"Cubes", "Cube"},
                 both + view + nested({"Perspectives", "Perspective"}, both) +
                     nested({"MeasureGroups", "MeasureGroup"},
                            both + nested({"Measures", "Measure"}, both + nested({"Source"}, column)))));
}

struct NameCounter {
  std::string_view name;
  int named = 0;
  int columnsThatFeed = 0;

  void enter(const TAVObject& object) {
    if (object.getName() == name) ++named;
    if (const auto* map = tav::as<TAVFeatureMap>(&object))
      for (const TAVFeature& source : map->sourceFeatures) columnsThatFeed += tav::is<TAVColumn>(source);
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
  // Database, source, view, table, column; dimension, attribute, hierarchy, level and its attribute; the cube
  // with its schema, package and perspective; measure group, measure and its copy.
  constexpr int kObjects = 17;
  tav::test::DocumentImporter importer;
  for (const std::string& name : names()) {
    SCOPED_TRACE(tav::test::escape(name, true));
    const tav::test::Imported result = importer.import(definitionOf(name));
    ASSERT_EQ(result.error, "");
    NameCounter counter{name};
    tav::walkTree(*result.model, counter);
    EXPECT_EQ(counter.named, kObjects);
    EXPECT_EQ(counter.columnsThatFeed, 2);
  }
}

}  // namespace
