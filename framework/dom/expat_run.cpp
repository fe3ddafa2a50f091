#include "framework/dom/expat_run.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "framework/dom/document_encoding.h"
#include "framework/dom/single_byte_encoding.h"

#define XML_DTD 1  // without it the header hides the limits of entity expansion
#include <expat.h>

namespace tav {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;
// What Expat may work through for entities, also such as leave no text.
constexpr float kMaxAmplification = 10.0F;
constexpr std::uint64_t kAmplificationThreshold = 8U << 20;
constexpr std::size_t kLongestCharacter = 3;  // bytes that one byte of a document can become
constexpr std::uint64_t kMaxExpansion = 1U << 20;
constexpr std::string_view kTooMuch = "its document type makes more than 1 MB of text of it";
constexpr std::size_t kMaxChunk = std::size_t{256} << 20;  // Expat counts a buffer in an int

/// The size of a tag's texts, and of what its attributes take beside them.
std::size_t bytesOf(const char* name, const char** attributes) {
  std::size_t bytes = std::strlen(name);
  for (; *attributes; ++attributes) bytes += std::strlen(*attributes) + sizeof(DomAttribute) / 2;
  return bytes;
}

}  // namespace

// Expat is C: an exception must not cross it. A handler that cannot go on leaves its cause and stops the
// parser.
struct ExpatRun::Callbacks {
  template <class Step> static void guarded(void* self, Step step) noexcept {
    auto& run = *static_cast<ExpatRun*>(self);
    if (!run.cause_.empty()) return;  // Expat may call once more before it stops
    try {
      step(run);
    } catch (const std::bad_alloc&) {
      run.stop("out of memory");
    } catch (const TreeLimit& limit) {
      run.stop(limit.what());
    } catch (...) {  // from the log
      run.failure_ = std::current_exception();
      run.stop("a warning could not be logged");
    }
  }

  static void start(void* self, const char* name, const char** attributes) {
    guarded(self, [=](ExpatRun& run) { run.start(name, attributes); });
  }
  static void end(void* self, const char* /*name*/) {
    guarded(self, [](ExpatRun& run) { run.tree_.end(); });
  }
  static void text(void* self, const char* text, int size) {
    guarded(self, [=](ExpatRun& run) { run.addText({text, static_cast<std::size_t>(size)}); });
  }
  static void doctype(void* self, const char* /*name*/, const char* systemId, const char* /*publicId*/,
                      int /*hasInternalPart*/) {
    guarded(self, [=](ExpatRun& run) {
      run.hasType_ = true;
      if (!systemId) return;
      run.warn("The external part of the document type, '" + TAVString(systemId) + "', is not read.");
    });
  }
  // Reading one would let a definition from elsewhere name any file or address of this machine.
  static int externalEntity(XML_Parser parser, const char* context, const char* /*base*/,
                            const char* /*systemId*/, const char* /*publicId*/) {
    guarded(XML_GetUserData(parser), [=](ExpatRun& run) {
      run.stop("external entities are not read, but '" + TAVString(context) + "' is one");
    });
    return XML_STATUS_ERROR;
  }
  static void skippedEntity(void* self, const char* name, int isParameterEntity) {
    if (isParameterEntity) return;  // it belongs to the document type alone
    guarded(self, [=](ExpatRun& run) { run.stop("the entity '" + TAVString(name) + "' is not declared"); });
  }
  static int unknownEncoding(void* /*data*/, const char* name, XML_Encoding* encoding) {
    return mapSingleByteEncoding(name, encoding->map) ? XML_STATUS_OK : XML_STATUS_ERROR;
  }
};

void ExpatRun::FreeParser::operator()(XML_ParserStruct* parser) const noexcept {
  XML_ParserFree(parser);
}

ExpatRun::ExpatRun(TreeBuilder& tree, TAVLog* log, std::string_view document)
    : tree_(tree), log_(log), document_(document), parser_(XML_ParserCreate(nullptr)) {
  // Without Expat's own namespaces: they would drop the prefixes, and refuse those that real files never
  // declare.
  XML_Parser parser = parser_.get();
  if (!parser) throw std::bad_alloc();
  XML_SetUnknownEncodingHandler(parser, Callbacks::unknownEncoding, nullptr);
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, kMaxAmplification);
  XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, kAmplificationThreshold);
}

ExpatRun::~ExpatRun() = default;

void ExpatRun::enter(DocumentPlace place) {
  begin_ = place;
  if (XML_SetEncoding(parser_.get(), "UTF-8") != XML_STATUS_OK) throw std::bad_alloc();
  std::string tags = tree_.isFinished() ? "<a/>" : "";
  for (std::size_t depth = 0; depth < tree_.depth(); ++depth) {
    tags.append("<").append(tree_.openElement(depth).getTagName()).append(">");
    if (tags.size() < kChunk) continue;
    feedEntrance(tags);
    tags.clear();
  }
  feedEntrance(tags);
}

void ExpatRun::feedEntrance(std::string_view tags) {
  entrance_ += tags.size();
  if (XML_Parse(parser_.get(), tags.data(), static_cast<int>(tags.size()), XML_FALSE) != XML_STATUS_OK)
    failAt(document_, begin_, causeOf(XML_GetErrorCode(parser_.get())));
}

void ExpatRun::read(ByteSource& source) {
  setHandlers();
  fed_ = entrance_;
  for (bool last = false; !last;) feed(source, last);
}

void ExpatRun::setHandlers() {
  XML_Parser parser = parser_.get();
  XML_SetUserData(parser, this);
  XML_SetElementHandler(parser, Callbacks::start, Callbacks::end);
  XML_SetCharacterDataHandler(parser, Callbacks::text);
  XML_SetStartDoctypeDeclHandler(parser, Callbacks::doctype);
  XML_SetExternalEntityRefHandler(parser, Callbacks::externalEntity);
  XML_SetSkippedEntityHandler(parser, Callbacks::skippedEntity);
}

void ExpatRun::feed(ByteSource& source, bool& last) {
  XML_Parser parser = parser_.get();
  // As much again as still waits for the end of its tag: chunks of one size would scan a huge tag once for
  // each.
  const auto parsed = static_cast<std::uint64_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser), 0));
  const auto capacity = std::clamp<std::size_t>(fed_ - std::min(fed_, parsed), kChunk, kMaxChunk);
  auto* buffer = static_cast<char*>(XML_GetBuffer(parser, static_cast<int>(capacity)));
  if (!buffer) failForDocument(document_, causeOf(XML_GetErrorCode(parser)));
  const std::size_t count = source.read(buffer, capacity);
  // The declaration is all in the first chunk.
  if (fed_ == 0) XML_SetEncoding(parser, encodingInSpiteOf({buffer, count}));
  last = count < capacity;
  fed_ += count;
  const XML_Status status = XML_ParseBuffer(parser, static_cast<int>(count), last);
  if (failure_) std::rethrow_exception(failure_);
  if (!cause_.empty()) failAt(document_, causePlace_, cause_);
  if (status != XML_STATUS_OK) failAt(document_, place(), causeOf(XML_GetErrorCode(parser)));
}

/// Of what Expat is at, in the document.
DocumentPlace ExpatRun::place() const {
  const std::uint64_t line = XML_GetCurrentLineNumber(parser_.get());
  const std::uint64_t column = XML_GetCurrentColumnNumber(parser_.get());
  if (line > 1) return {begin_.line + line - 1, column + 1};
  return {begin_.line, begin_.column + column - std::min(column, entrance_)};
}

void ExpatRun::start(const char* name, const char** attributes) {
  if (hasType_) countExpansion(bytesOf(name, attributes));
  const auto specified = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser_.get())) / 2;
  attributes_.clear();
  for (; *attributes; attributes += 2) {
    const bool isDefault = attributes_.size() >= specified;
    const std::string_view value = isDefault ? defaultValue(attributes[1]) : attributes[1];
    attributes_.push_back({attributes[0], value, isDefault});
  }
  tree_.start(name, place().line, attributes_);
}

// A default value is kept once: copied into every element of its tag it could outgrow any document. Expat
// holds it at one address for the whole run.
std::string_view ExpatRun::defaultValue(const char* value) {
  const auto [place, isNew] = defaults_.try_emplace(value);
  if (isNew) place->second = tree_.keep(value);
  return place->second;
}

// Whatever a document type makes of a document, entities and default values, must not outgrow what is
// written: every name of it may stand in many lines of the outputs.
void ExpatRun::countExpansion(std::size_t bytes) {
  // What comes from an entity comes at the place of its reference.
  const XML_Index place = XML_GetCurrentByteIndex(parser_.get());
  const auto written =
      place == lastPlace_ ? 0 : static_cast<std::size_t>(XML_GetCurrentByteCount(parser_.get()));
  lastPlace_ = place;
  expansion_ += bytes - std::min(bytes, written * kLongestCharacter);
  if (expansion_ > kMaxExpansion) stop(kTooMuch);
}

void ExpatRun::addText(std::string_view text) {
  if (hasType_) countExpansion(text.size());
  tree_.addText(text);
}

void ExpatRun::warn(std::string_view text) const {
  if (log_)
    log_->logEvent({TAVString(document_) + ": " + TAVString(text), "TAVDOM_W0002", kSeverityWarning, {}});
}

void ExpatRun::stop(std::string_view cause) {
  cause_ = cause;
  causePlace_ = place();
  XML_StopParser(parser_.get(), XML_FALSE);
}

TAVString ExpatRun::causeOf(int error) const {
  const auto openElement = [this] {
    const TAVDOMElement& element = tree_.innermost();
    return TAVString(element.getTagName()) + ">, which begins on line " + std::to_string(element.getLine());
  };
  if (error == XML_ERROR_TAG_MISMATCH) return TAVString("the end tag does not belong to <") + openElement();
  if (error == XML_ERROR_NO_ELEMENTS && tree_.isOpen())
    return TAVString("the document ends inside <") + openElement();
  if (error == XML_ERROR_NO_ELEMENTS) return "the document has no element";
  if (error == XML_ERROR_UNKNOWN_ENCODING) return "the declared encoding is unknown";
  if (error == XML_ERROR_AMPLIFICATION_LIMIT_BREACH) return kTooMuch;
  const char* words = XML_ErrorString(static_cast<XML_Error>(error));
  return words ? words : TAVString("parser error ") + std::to_string(error);
}

}  // namespace tav
