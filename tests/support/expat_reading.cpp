#include "tests/support/expat_reading.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "framework/dom/dom.h"
#include "framework/std/exception.h"

namespace tav::test {

namespace {

struct Element {
  std::string head;
  std::string text;
  std::size_t depth;
  bool hasChildren = false;
};

struct Reading {
  XML_Parser parser;
  std::vector<Element> elements;
  std::vector<std::size_t> open;
};

void XMLCALL start(void* data, const char* name, const char** attributes) {
  Reading& reading = *static_cast<Reading*>(data);
  std::string head = std::to_string(XML_GetCurrentLineNumber(reading.parser)) + " " + name;
  for (; *attributes; attributes += 2)
    head.append(" ").append(attributes[0]).append("=").append(attributes[1]);
  if (!reading.open.empty()) reading.elements[reading.open.back()].hasChildren = true;
  reading.elements.push_back({head, "", reading.open.size()});
  reading.open.push_back(reading.elements.size() - 1);
}

void XMLCALL end(void* data, const char* /*name*/) {
  static_cast<Reading*>(data)->open.pop_back();
}

void XMLCALL text(void* data, const char* text, int size) {
  Reading& reading = *static_cast<Reading*>(data);
  reading.elements[reading.open.back()].text.append(text, static_cast<std::size_t>(size));
}

std::string kindOf(XML_Error error, const Reading& reading) {
  if (error == XML_ERROR_TAG_MISMATCH) return "the end tag does not belong";
  if (error == XML_ERROR_NO_ELEMENTS)
    return reading.open.empty() ? "the document has no" : "the document ends";
  return XML_ErrorString(error);
}

std::string faultOf(const Reading& reading) {
  return std::to_string(XML_GetCurrentLineNumber(reading.parser)) + ":" +
         std::to_string(XML_GetCurrentColumnNumber(reading.parser) + 1) + ": " +
         kindOf(XML_GetErrorCode(reading.parser), reading);
}

/// Of a message of ours, as much as kindOf() gives.
std::string kindOf(std::string_view message) {
  for (const std::string_view begin :
       {"the end tag does not belong", "the document has no", "the document ends"})
    if (message.starts_with(begin)) return std::string(begin);
  return std::string(message);
}

std::string lineOf(std::size_t depth, const std::string& head, std::string_view text, bool hasChildren) {
  if (hasChildren && text.find_first_not_of(" \t\r\n") == text.npos) text = {};
  return std::string(depth, ' ') + head + " [" + std::string(text) + "]\n";
}

}  // namespace

bool isPlainDocument(std::string_view document) {
  const std::string_view beginning = document.substr(0, 2);
  return !document.empty() && beginning.find('\0') == beginning.npos && beginning != "\xFF\xFE" &&
         beginning != "\xFE\xFF" && document.find("<!DOCTYPE") == document.npos &&
         document.find("encoding") == document.npos;
}

std::string expatReading(std::string_view document) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                            &XML_ParserFree);
  Reading reading{parser.get(), {}, {}};
  XML_SetUserData(parser.get(), &reading);
  XML_SetElementHandler(parser.get(), start, end);
  XML_SetCharacterDataHandler(parser.get(), text);
  const auto size = static_cast<int>(document.size());
  if (XML_Parse(parser.get(), document.data(), size, XML_TRUE) != XML_STATUS_OK) return faultOf(reading);
  std::string lines;
  for (const Element& e : reading.elements) lines += lineOf(e.depth, e.head, e.text, e.hasChildren);
  return lines;
}

std::string ourReading(std::string_view document) {
  TAVDOM dom(nullptr);
  std::string lines;
  try {
    std::vector<std::pair<const TAVDOMElement*, std::size_t>> left{{dom.parseText(document, "doc"), 0}};
    while (!left.empty()) {
      const auto [element, depth] = left.back();
      left.pop_back();
      std::string head = std::to_string(element->getLine()) + " " + std::string(element->getTagName());
      for (const DomAttribute& a : element->getAttributes())
        head.append(" ").append(a.name->written).append("=").append(a.value);
      lines += lineOf(depth, head, element->getValue(), element->getElementCount() > 0);
      for (std::int32_t i = element->getElementCount(); i-- > 0;)
        left.emplace_back(element->getElement(i), depth + 1);
    }
    return lines;
  } catch (const TAVException& e) {
    const std::string message = e.getMessage().str();
    constexpr std::string_view kFront = "[TAVDOM_F0001] doc:";
    const std::size_t cause = message.find(": ", kFront.size()) + 2;
    return message.substr(kFront.size(), cause - kFront.size()) + kindOf(message.substr(cause));
  }
}

}  // namespace tav::test
