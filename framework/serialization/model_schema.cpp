#include "framework/serialization/model_schema.h"

#include <array>
#include <vector>

#include "framework/details/details.h"
#include "framework/model/reflection.h"
#include "framework/serialization/model_format.h"

namespace tav {
namespace {

constexpr std::string_view kHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
 <xs:annotation>
  <xs:documentation>
   A saved model. Each object is an element named after its class; its attributes and its references to other
   objects, by their ids, are attributes; what it contains stands in elements named after its roles. An
   attribute is left out when it has its default: the empty text, 0, false. Ids are given in document order.
   Details, where a document has them, tell what the definition says beyond the model: items that only they have,
   relations from what is named to what names it, settings, names in expressions that lead to nothing, and what was
   passed over. Many relations have one kind, and many settings one name and value, so that each of these is written
   once, with a list of ids. The numbers of such a list are distances: the first is an id, and each other one tells
   how far the next id lies behind the one before, or before it. In "ends", "12:7 1 3:-2" are the relations from 7 to
   12, from 8 to 12 and from 6 to 15. Before, each relation had an element with "from" and "to", and the settings
   of each item stood in an element "item".
  </xs:documentation>
 </xs:annotation>
 <xs:simpleType name="id">
  <xs:restriction base="xs:unsignedInt">
   <xs:minInclusive value="1"/>
  </xs:restriction>
 </xs:simpleType>
 <xs:simpleType name="ids">
  <xs:restriction>
   <xs:simpleType>
    <xs:list itemType="id"/>
   </xs:simpleType>
   <xs:minLength value="1"/>
  </xs:restriction>
 </xs:simpleType>
 <xs:simpleType name="distances">
  <xs:list itemType="xs:int"/>
 </xs:simpleType>
 <xs:simpleType name="ends">
  <xs:restriction base="xs:string">
   <xs:pattern value="-?[0-9]+:-?[0-9]+( (-?[0-9]+:)?-?[0-9]+)*"/>
  </xs:restriction>
 </xs:simpleType>
 <xs:simpleType name="flag">
  <xs:restriction base="xs:string">
   <xs:enumeration value="true"/>
  </xs:restriction>
 </xs:simpleType>
 <xs:simpleType name="dataStore">
  <xs:restriction base="xs:string">
   <xs:pattern value=".* [0-9]+\.[0-9]+\.[0-9]+"/>
  </xs:restriction>
 </xs:simpleType>
)";

std::string_view typeOf(AttributeKind kind) {
  switch (kind) {
    case AttributeKind::flag:
      return "flag";
    case AttributeKind::number:
      return "xs:int";
    case AttributeKind::text:
      return "xs:string";
    case AttributeKind::dataStore:
      return "dataStore";
  }
  return {};
}

void writeAttribute(std::ostream& out, std::string_view name, std::string_view type,
                    std::string_view more = "") {
  out << "  <xs:attribute name=\"" << name << "\" type=\"" << type << "\"" << more << "/>\n";
}

void writeRole(std::ostream& out, const LinkRow& row) {
  out << "   <xs:element name=\"" << row.name << "\" minOccurs=\"0\">\n"
      << "    <xs:complexType>\n     <xs:choice maxOccurs=\"unbounded\">\n";
  for (ClassId id = row.target; id <= kClassRanges[row.target].last; ++id) {
    const ClassInfo& info = classInfo(id);
    if (info.create) out << "      <xs:element name=\"" << info.name << "\" type=\"" << info.name << "\"/>\n";
  }
  if (row.target == classId<TAVModelContent>)
    out << "      <xs:element name=\"" << kDetailsContent << "\" type=\"" << kDetailsContent << "\"/>\n";
  out << "     </xs:choice>\n    </xs:complexType>\n   </xs:element>\n";
}

/// The content that holds details: no class, but kinds of things.
void writeDetailsTypes(std::ostream& out) {
  out << R"( <xs:complexType name="item">
  <xs:attribute name="id" type="id" use="required"/>
  <xs:attribute name="owner" type="id"/>
  <xs:attribute name="name" type="xs:string"/>
  <xs:attribute name="language" type="xs:string"/>
  <xs:attribute name="text" type="xs:string"/>
 </xs:complexType>
 <xs:complexType name="relation">
  <xs:attribute name="text" type="xs:string"/>
  <xs:attribute name="ends" type="ends"/>
  <xs:attribute name="from" type="id"/>
  <xs:attribute name="to" type="id"/>
 </xs:complexType>
 <xs:complexType name="setting">
  <xs:sequence>
   <xs:element name="is" maxOccurs="unbounded">
    <xs:complexType>
     <xs:attribute name="value" type="xs:string"/>
     <xs:attribute name="of" type="distances" use="required"/>
    </xs:complexType>
   </xs:element>
  </xs:sequence>
  <xs:attribute name="name" type="xs:string"/>
 </xs:complexType>
 <xs:complexType name="settingsOfItem">
  <xs:sequence>
   <xs:element name="setting" minOccurs="0" maxOccurs="unbounded">
    <xs:complexType>
     <xs:attribute name="name" type="xs:string" use="required"/>
     <xs:attribute name="value" type="xs:string"/>
    </xs:complexType>
   </xs:element>
  </xs:sequence>
  <xs:attribute name="ref" type="id" use="required"/>
  <xs:anyAttribute processContents="skip"/>
 </xs:complexType>
 <xs:complexType name="openName">
  <xs:attribute name="ref" type="id" use="required"/>
  <xs:attribute name="name" type="xs:string" use="required"/>
  <xs:attribute name="state" type="xs:string" use="required"/>
  <xs:attribute name="note" type="xs:string"/>
 </xs:complexType>
 <xs:complexType name="passedOver">
  <xs:attribute name="count" type="xs:unsignedInt" use="required"/>
 </xs:complexType>
)";
}

struct PartElement {
  std::string_view name;
  std::string_view type;
};

/// An element that holds any number of such elements.
void writeDetailsPart(std::ostream& out, std::string_view part, const std::vector<PartElement>& elements) {
  out << "   <xs:element name=\"" << part << "\">\n    <xs:complexType>\n"
      << "     <xs:choice minOccurs=\"0\" maxOccurs=\"unbounded\">\n";
  for (const PartElement& element : elements)
    out << "      <xs:element name=\"" << element.name << "\" type=\"" << element.type << "\"/>\n";
  out << "     </xs:choice>\n    </xs:complexType>\n   </xs:element>\n";
}

/// An element of this type for each kind.
template <class Kind> std::vector<PartElement> elementsOf(std::size_t count, std::string_view type) {
  std::vector<PartElement> elements;
  elements.reserve(count);
  for (std::size_t i = 0; i < count; ++i) elements.push_back({rowOf(static_cast<Kind>(i)).name, type});
  return elements;
}

void writeDetailsContent(std::ostream& out) {
  writeDetailsTypes(out);
  out << " <xs:complexType name=\"" << kDetailsContent << "\">\n  <xs:sequence>\n";
  writeDetailsPart(out, kItems, elementsOf<ObjectKind>(kObjectKindCount, "item"));
  writeDetailsPart(out, kRelations, elementsOf<RelationKind>(kRelationKindCount, "relation"));
  writeDetailsPart(out, kSettings, {{kSetting, "setting"}, {kSettingsOfItem, "settingsOfItem"}});
  writeDetailsPart(out, kOpenNames, {{kOpenName, "openName"}});
  writeDetailsPart(out, kPassedOver, elementsOf<PassedOver>(kPassedOverCount, "passedOver"));
  out << "  </xs:sequence>\n";
  writeAttribute(out, kElementTypeAttribute, "xs:int",
                 " use=\"required\" fixed=\"" + std::to_string(kDetailsElementType) + "\"");
  out << " </xs:complexType>\n";
}

void writeClass(std::ostream& out, const ClassInfo& info) {
  const bool ofDocument = info.id == classId<TAVMultiModel> || info.id == classId<TAVModelContent>;
  out << " <xs:complexType name=\"" << info.name << "\">\n";
  out << "  <xs:sequence>\n";
  for (const LinkInfo& link : info.links)
    if (link.row->kind == LinkKind::contained) writeRole(out, *link.row);
  out << "  </xs:sequence>\n";
  if (ofDocument) {
    const std::string fixed =
        " use=\"required\" fixed=\"" + std::to_string(kClassRanges[info.id].code) + "\"";
    writeAttribute(out, kElementTypeAttribute, "xs:int", fixed);
    if (info.id == classId<TAVMultiModel>)
      writeAttribute(out, kFormatAttribute, "xs:string",
                     " use=\"required\" fixed=\"" + std::string(kFormat) + "\"");
  } else {
    writeAttribute(out, kIdAttribute, "id", " use=\"required\"");
    writeAttribute(out, kNameAttribute, "xs:string");
  }
  for (const AttributeRow* row : info.attributes) writeAttribute(out, row->name, typeOf(row->kind));
  for (const LinkInfo& link : info.links)
    if (link.row->kind == LinkKind::reference)
      writeAttribute(out, link.row->name, link.row->isMany() ? "ids" : "id");
  out << " </xs:complexType>\n";
}

}  // namespace

void writeModelSchema(std::ostream& out) {
  out << kHead;
  for (ClassId id = 0; id < kClassCount; ++id)
    if (classInfo(id).create) writeClass(out, classInfo(id));
  writeDetailsContent(out);
  const std::string_view root = classInfo(classId<TAVMultiModel>).name;
  out << " <xs:element name=\"" << root << "\" type=\"" << root << "\">\n"
      << "  <xs:unique name=\"ids\">\n   <xs:selector xpath=\".//*\"/>\n   <xs:field xpath=\"@id\"/>\n"
      << "  </xs:unique>\n </xs:element>\n</xs:schema>\n";
}

}  // namespace tav
