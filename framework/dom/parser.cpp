#include "framework/dom/parser.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "framework/dom/document_encoding.h"
#include "framework/dom/dom.h"
#include "framework/dom/single_byte_encoding.h"
#include "framework/std/exception.h"

#define XML_DTD 1  // without it the header hides the limits of entity expansion
#include <expat.h>

namespace tav {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;
// What Expat may work through for entities, also such as leave no text.
constexpr float kMaxAmplification = 10.0F;
constexpr std::uint64_t kAmplificationThreshold = 8U << 20;
constexpr std::size_t kLongestCharacter = 3;  // bytes that one byte of a document can become
constexpr std::string_view kTooMuch = "its document type makes more than 1 MB of text of it";
constexpr std::size_t kMaxChunk = std::size_t{256} << 20;  // Expat counts a buffer in an int

bool isBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
}

/// The size of a tag's texts, and of what its attributes take beside them.
std::size_t bytesOf(const char* name, const char** attributes) {
  std::size_t bytes = std::strlen(name);
  for (; *attributes; ++attributes) bytes += std::strlen(*attributes) + sizeof(DomAttribute) / 2;
  return bytes;
}

template <class Number, class Value> bool fits(Value value) {
  return value <= static_cast<Value>(std::numeric_limits<Number>::max());
}

}  // namespace

void failForDocument(std::string_view document, std::string_view cause) {
  fail("TAVDOM_F0001", TAVString(document) + ": " + TAVString(cause));
}

// Expat is C: an exception must not cross it. A handler that cannot go on leaves its cause and stops the
// parser.
struct DomParser::Callbacks {
  template <class Step> static void guarded(void* self, Step step) noexcept {
    auto& parser = *static_cast<DomParser*>(self);
    if (!parser.cause_.empty()) return;  // Expat may call once more before it stops
    try {
      step(parser);
    } catch (const std::bad_alloc&) {
      parser.stop("out of memory");
    } catch (...) {  // from the log
      parser.failure_ = std::current_exception();
      parser.stop("a warning could not be logged");
    }
  }

  static void start(void* self, const char* name, const char** attributes) {
    guarded(self, [=](DomParser& p) { p.start(name, attributes); });
  }
  static void end(void* self, const char* /*name*/) {
    guarded(self, [](DomParser& p) { p.end(); });
  }
  static void text(void* self, const char* text, int size) {
    guarded(self, [=](DomParser& p) { p.addText({text, static_cast<std::size_t>(size)}); });
  }
  static void doctype(void* self, const char* /*name*/, const char* systemId, const char* /*publicId*/,
                      int /*hasInternalPart*/) {
    guarded(self, [=](DomParser& p) {
      p.hasType_ = true;
      if (!systemId) return;
      p.warn("The external part of the document type, '" + TAVString(systemId) + "', is not read.");
    });
  }
  // Reading one would let a definition from elsewhere name any file or address of this machine.
  static int externalEntity(XML_Parser parser, const char* context, const char* /*base*/,
                            const char* /*systemId*/, const char* /*publicId*/) {
    guarded(XML_GetUserData(parser), [=](DomParser& p) {
      p.stop("external entities are not read, but '" + TAVString(context) + "' is one");
    });
    return XML_STATUS_ERROR;
  }
  static void skippedEntity(void* self, const char* name, int isParameterEntity) {
    if (isParameterEntity) return;  // it belongs to the document type alone
    guarded(self, [=](DomParser& p) { p.stop("the entity '" + TAVString(name) + "' is not declared"); });
  }
  static int unknownEncoding(void* /*data*/, const char* name, XML_Encoding* encoding) {
    return mapSingleByteEncoding(name, encoding->map) ? XML_STATUS_OK : XML_STATUS_ERROR;
  }
};

void DomParser::FreeParser::operator()(XML_ParserStruct* parser) const noexcept {
  XML_ParserFree(parser);
}

DomParser::DomParser(DomStorage& storage, TAVLog* log, std::string_view document)
    : storage_(storage), log_(log), document_(document), parser_(XML_ParserCreate(nullptr)) {
  // Without Expat's own namespaces: they would drop the prefixes, and refuse those that real files never
  // declare.
  XML_Parser parser = parser_.get();
  if (!parser) throw std::bad_alloc();
  storage_.names.closeScope(0);  // an earlier document may have broken off inside
  XML_SetUserData(parser, this);
  XML_SetElementHandler(parser, Callbacks::start, Callbacks::end);
  XML_SetCharacterDataHandler(parser, Callbacks::text);
  XML_SetStartDoctypeDeclHandler(parser, Callbacks::doctype);
  XML_SetExternalEntityRefHandler(parser, Callbacks::externalEntity);
  XML_SetSkippedEntityHandler(parser, Callbacks::skippedEntity);
  XML_SetUnknownEncodingHandler(parser, Callbacks::unknownEncoding, nullptr);
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, kMaxAmplification);
  XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, kAmplificationThreshold);
}

DomParser::~DomParser() = default;

const TAVDOMElement* DomParser::parse(const Read& read, std::uint64_t total, const Progress& progress) {
  std::uint64_t fed = 0;
  for (bool last = false; !last;) {
    feed(read, fed, last);
    if (progress) progress(fed, std::max(fed, total));
  }
  void* place = storage_.arena.allocate(sizeof(TAVDOMElement), alignof(TAVDOMElement));
  return std::construct_at(static_cast<TAVDOMElement*>(place), closed_.front());
}

void DomParser::feed(const Read& read, std::uint64_t& fed, bool& last) {
  XML_Parser parser = parser_.get();
  // As much again as still waits for the end of its tag: chunks of one size would scan a huge tag once for
  // each.
  const auto parsed = static_cast<std::uint64_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser), 0));
  const auto capacity = std::clamp<std::size_t>(fed - std::min(fed, parsed), kChunk, kMaxChunk);
  auto* buffer = static_cast<char*>(XML_GetBuffer(parser, static_cast<int>(capacity)));
  if (!buffer) failForDocument(document_, causeOf(XML_GetErrorCode(parser)));
  const std::size_t count = read(buffer, capacity);
  // The declaration is all in the first chunk.
  if (fed == 0) XML_SetEncoding(parser, encodingInSpiteOf({buffer, count}));
  last = count < capacity;
  fed += count;
  if (fed == 0) failAt(1, 1, "the file is empty");
  const XML_Status status = XML_ParseBuffer(parser, static_cast<int>(count), last);
  if (failure_) std::rethrow_exception(failure_);
  if (!cause_.empty()) failAt(causeLine_, causeColumn_, cause_);
  if (status != XML_STATUS_OK)
    failAt(XML_GetCurrentLineNumber(parser), XML_GetCurrentColumnNumber(parser) + 1,
           causeOf(XML_GetErrorCode(parser)));
}

void DomParser::start(const char* name, const char** attributes) {
  Frame frame{{}, closed_.size(), text_.size(), storage_.names.openScope()};
  // What an element declares holds for its own tag, so all of its attributes are looked at before the tag.
  std::size_t count = 0;
  for (; attributes[2 * count]; ++count)
    storage_.names.declare(attributes[2 * count], attributes[2 * count + 1]);
  if (hasType_) countExpansion(bytesOf(name, attributes));
  frame.element.name_ = storage_.names.tag(name);
  const XML_Size line = XML_GetCurrentLineNumber(parser_.get());
  frame.element.line_ = fits<std::uint32_t>(line) ? static_cast<std::uint32_t>(line) : 0xFFFFFFFF;
  if (count > 0) readAttributes(attributes, count, frame.element);
  open_.push_back(frame);
}

void DomParser::readAttributes(const char** attributes, std::size_t count, TAVDOMElement& element) {
  const auto specified = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser_.get())) / 2;
  auto* place = static_cast<DomAttribute*>(
      storage_.arena.allocate(count * sizeof(DomAttribute), alignof(DomAttribute)));
  for (std::size_t i = 0; i < count; ++i) {
    const char* value = attributes[2 * i + 1];
    std::construct_at(place + i,
                      DomAttribute{storage_.names.attribute(attributes[2 * i]),
                                   i < specified ? storage_.arena.copy(value) : defaultValue(value)});
  }
  element.attributes_ = place;
  element.attributeCount_ = static_cast<std::uint32_t>(count);
}

// A default value is kept once: copied into every element of its tag it could outgrow any document. Expat
// holds it at one address for the whole run.
std::string_view DomParser::defaultValue(const char* value) {
  const auto [place, isNew] = defaults_.try_emplace(value);
  if (isNew) place->second = storage_.arena.copy(value);
  return place->second;
}

// Whatever a document type makes of a document, entities and default values, must not outgrow what is
// written: every name of it may stand in many lines of the outputs.
void DomParser::countExpansion(std::size_t bytes) {
  // What comes from an entity comes at the place of its reference.
  const XML_Index place = XML_GetCurrentByteIndex(parser_.get());
  const auto written =
      place == lastPlace_ ? 0 : static_cast<std::size_t>(XML_GetCurrentByteCount(parser_.get()));
  lastPlace_ = place;
  expansion_ += bytes - std::min(bytes, written * kLongestCharacter);
  if (expansion_ > TAVDOM::kMaxExpansion) stop(kTooMuch);
}

void DomParser::addText(std::string_view text) {
  if (hasType_) countExpansion(text.size());
  if (!fits<std::uint32_t>(text_.size() - open_.back().textStart + text.size()))
    return stop("an element holds more than 4 GB of text");
  text_ += text;
}

// The children of an element are known when it ends, and only then do they get their place side by side.
// Until then they lie on closed_, behind those of the elements around it, as its text lies on text_.
void DomParser::end() {
  const Frame& frame = open_.back();
  TAVDOMElement element = frame.element;
  const std::span<const TAVDOMElement> children = std::span(closed_).subspan(frame.firstChild);
  // Between child elements there is indentation only: a third of a typical file.
  std::string_view own = std::string_view(text_).substr(frame.textStart);
  if (!children.empty() && isBlank(own)) own = {};
  element.value_ = storage_.arena.copy(own).data();
  element.valueSize_ = static_cast<std::uint32_t>(own.size());
  if (!children.empty()) placeChildren(element, children);
  closed_.resize(frame.firstChild);
  text_.resize(frame.textStart);
  storage_.names.closeScope(frame.scope);
  open_.pop_back();
  closed_.push_back(element);
}

void DomParser::placeChildren(TAVDOMElement& element, std::span<const TAVDOMElement> children) {
  if (!fits<std::int32_t>(children.size())) return stop("an element has more than 2,147,483,647 children");
  const bool indexed = children.size() >= kIndexedChildren;
  const std::size_t front = indexed ? sizeof(ChildIndex::Front) : 0;
  // Elements that point to a child's own children can be copied, because those have their place for good.
  auto* place =
      static_cast<std::byte*>(storage_.arena.allocate(front + children.size_bytes(), alignof(TAVDOMElement)));
  auto* first = reinterpret_cast<TAVDOMElement*>(place + front);
  std::uninitialized_copy(children.begin(), children.end(), first);
  element.children_ = first;
  element.count_ = static_cast<std::uint32_t>(children.size());
  if (indexed)
    std::construct_at(reinterpret_cast<ChildIndex::Front*>(place), ChildIndex::Front{indexOf(children)});
}

const ChildIndex* DomParser::indexOf(std::span<const TAVDOMElement> children) const {
  ChildIndex::Builder index;
  for (std::uint32_t i = 0; i < children.size(); ++i) index.add(*children[i].name_, i);
  return index.finish(storage_.arena);
}

void DomParser::warn(std::string_view text) const {
  if (log_)
    log_->logEvent({TAVString(document_) + ": " + TAVString(text), "TAVDOM_W0002", kSeverityWarning, {}});
}

void DomParser::stop(std::string_view cause) {
  cause_ = cause;
  causeLine_ = XML_GetCurrentLineNumber(parser_.get());
  causeColumn_ = XML_GetCurrentColumnNumber(parser_.get()) + 1;
  XML_StopParser(parser_.get(), XML_FALSE);
}

TAVString DomParser::causeOf(int error) const {
  const auto openElement = [this] {
    const TAVDOMElement& element = open_.back().element;
    return TAVString(element.getTagName()) + ">, which begins on line " + std::to_string(element.getLine());
  };
  if (error == XML_ERROR_TAG_MISMATCH) return TAVString("the end tag does not belong to <") + openElement();
  if (error == XML_ERROR_NO_ELEMENTS && !open_.empty())
    return TAVString("the document ends inside <") + openElement();
  if (error == XML_ERROR_NO_ELEMENTS) return "the document has no element";
  if (error == XML_ERROR_UNKNOWN_ENCODING) return "the declared encoding is unknown";
  if (error == XML_ERROR_AMPLIFICATION_LIMIT_BREACH) return kTooMuch;
  const char* words = XML_ErrorString(static_cast<XML_Error>(error));
  return words ? words : TAVString("parser error ") + std::to_string(error);
}

void DomParser::failAt(std::uint64_t line, std::uint64_t column, std::string_view cause) const {
  failForDocument(TAVString(document_) + ":" + std::to_string(line) + ":" + std::to_string(column), cause);
}

}  // namespace tav
