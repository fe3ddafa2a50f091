#include "tests/support/short_definition.h"

#include <regex>
#include <utility>
#include <vector>

namespace tav::test {

std::string expanded(std::string text) {
  static const std::vector<std::pair<std::regex, std::string>> kShort{
      {std::regex(R"re(<View name="([^"]*)" source="([^"]*)">)re"),
       "<DataSourceView><ID>$1</ID><Name>$1</Name><DataSourceID>$2</DataSourceID><Schema><xs:schema "
       "xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" "
       "xmlns:msprop=\"urn:schemas-microsoft-com:xml-msprop\"><xs:element "
       "name=\"D\"><xs:complexType><xs:choice>"},
      {std::regex("</View>"),
       "</xs:choice></xs:complexType></xs:element></xs:schema></Schema></DataSourceView>"},
      {std::regex("<Table ([^>]*)>"), "<xs:element $1><xs:complexType><xs:sequence>"},
      {std::regex("</Table>"), "</xs:sequence></xs:complexType></xs:element>"},
      {std::regex("<Column "), "<xs:element "},
      {std::regex(R"re(<A name="([^"]*)" table="([^"]*)" column="([^"]*)"/>)re"),
       "<Attribute><ID>$1</ID><Name>$1</Name><KeyColumns><KeyColumn><DataType>Integer</DataType><Source>"
       "<TableID>$2</TableID><ColumnID>$3</ColumnID></Source></KeyColumn></KeyColumns></Attribute>"},
      {std::regex(R"re(<M name="([^"]*)" sum="([^"]*)" table="([^"]*)" column="([^"]*)"/>)re"),
       "<Measure><ID>$1</ID><Name>$1</Name><AggregateFunction>$2</AggregateFunction><DataType>Double</"
       "DataType><Source><Source><TableID>$3</TableID><ColumnID>$4</ColumnID></Source></Source></Measure>"}};
  for (const auto& [pattern, meaning] : kShort) text = std::regex_replace(text, pattern, meaning);
  return text;
}

}  // namespace tav::test
