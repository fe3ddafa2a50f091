#include "host/inputs/object_text.h"

#include <expat.h>

#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <unordered_set>

#include "host/inputs/file_text.h"

namespace host {
namespace {

constexpr std::string_view kDesigner = "http://schemas.microsoft.com/DataWarehouse/Designer/1.0";
constexpr std::string_view kPrefixDeclaration = "xmlns:";
constexpr std::string_view kBlanks = " \t\r\n";

/// Cuts one document. What is copied and what is not yet is told by two places: `copied_` in the document,
/// and the end of the text.
class Cutter {
 public:
  Cutter(std::string_view document, std::string_view root) : document_(document), root_(root) {}

  ObjectText cut() {
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                              &XML_ParserFree);
    if (!parser) throw std::bad_alloc();
    if (document_.empty()) throw BrokenObject("it is empty");
    if (document_.size() > std::numeric_limits<int>::max()) throw BrokenObject("it is larger than 2 GB");
    parser_ = parser.get();
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(parser_, onStart, onEnd);
    XML_SetStartDoctypeDeclHandler(parser_, onDoctype);
    const XML_Status status =
        XML_Parse(parser_, document_.data(), static_cast<int>(document_.size()), XML_TRUE);
    if (failure_) std::rethrow_exception(failure_);
    if (status != XML_STATUS_OK) fail(causeOf(XML_GetErrorCode(parser_)));
    return std::move(object_);
  }

 private:
  // Expat is C: an exception must not cross it.
  template <class Step> static void guarded(void* self, Step step) noexcept {
    auto& cutter = *static_cast<Cutter*>(self);
    if (cutter.failure_) return;
    try {
      step(cutter);
    } catch (...) {
      cutter.failure_ = std::current_exception();
      XML_StopParser(cutter.parser_, XML_FALSE);
    }
  }
  static void onStart(void* self, const char* name, const char** attributes) {
    guarded(self, [=](Cutter& cutter) { cutter.start(name, attributes); });
  }
  static void onEnd(void* self, const char* /*name*/) {
    guarded(self, [](Cutter& cutter) { cutter.end(); });
  }
  static void onDoctype(void* self, const char* /*name*/, const char* /*systemId*/, const char* /*publicId*/,
                        int /*hasInternalPart*/) {
    // Its entities would be missing where the text is put.
    guarded(self, [](Cutter& cutter) { cutter.fail("an object of a project has no document type"); });
  }

  static std::string causeOf(XML_Error error) {
    if (error == XML_ERROR_NO_ELEMENTS) return "the file ends too early";
    const char* words = XML_ErrorString(error);
    return words ? words : "parser error " + std::to_string(error);
  }

  [[noreturn]] void fail(const std::string& cause) const {
    throw BrokenObject(cause, ":" + std::to_string(XML_GetCurrentLineNumber(parser_)) + ":" +
                                  std::to_string(XML_GetCurrentColumnNumber(parser_) + 1));
  }

  /// Where the parser is in the document.
  [[nodiscard]] std::size_t place() const {
    return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_));
  }
  /// How many bytes of the document the present tag has.
  [[nodiscard]] std::size_t tagSize() const {
    return static_cast<std::size_t>(XML_GetCurrentByteCount(parser_));
  }
  /// Where in the text a place of the document is, or will be.
  [[nodiscard]] std::size_t inText(std::size_t documentPlace) const {
    return object_.text.size() + documentPlace - copied_;
  }

  void copyUpTo(std::size_t documentPlace) {
    object_.text.append(document_.substr(copied_, documentPlace - copied_));
    copied_ = documentPlace;
  }

  void start(const char* name, const char** attributes) {
    if (depth_ == 0) startRoot(name, attributes);
    const bool kept = depth_ <= ObjectText::kDeepest;
    if (kept) {
      open_.push_back(object_.elements.size());
      object_.elements.push_back({name, depth_, inText(place())});
    }
    ++depth_;
    if (hasDesigned(attributes)) copyTagWithoutDesigned();
    if (kept) object_.elements.back().inner = inText(place() + tagSize());
  }

  void startRoot(std::string_view name, const char** attributes) {
    if (name != root_)
      fail("its root element is <" + std::string(name) + ">, not <" + std::string(root_) + ">");
    for (; *attributes; attributes += 2) {
      const std::string_view declared = attributes[0];
      if (declared.starts_with(kPrefixDeclaration) && attributes[1] == kDesigner)
        designed_ = std::string(declared.substr(kPrefixDeclaration.size())) + ':';
    }
    copied_ = place();  // what stands in front is no part of the object
  }

  [[nodiscard]] bool hasDesigned(const char** attributes) const {
    if (designed_.empty()) return false;
    for (; *attributes; attributes += 2)
      if (std::string_view(*attributes).starts_with(designed_)) return true;
    return false;
  }

  /// Copies the present tag attribute by attribute. The parser has seen that it is well-formed.
  void copyTagWithoutDesigned() {
    copyUpTo(place());
    const std::string_view tag = document_.substr(place(), tagSize());
    std::size_t at = tag.find_first_of(kBlanks);
    object_.text.append(tag.substr(0, at));
    for (;;) {
      const std::size_t name = tag.find_first_not_of(kBlanks, at);
      if (tag[name] == '>' || tag[name] == '/') break;
      const std::size_t quote = tag.find_first_of("\"'", name);
      const std::size_t end = tag.find(tag[quote], quote + 1) + 1;
      if (!tag.substr(name).starts_with(designed_)) object_.text.append(tag.substr(at, end - at));
      at = end;
    }
    object_.text.append(tag.substr(at));
    copied_ = place() + tagSize();
  }

  void end() {
    --depth_;
    if (depth_ > ObjectText::kDeepest) return;
    TextElement& element = object_.elements[open_.back()];
    open_.pop_back();
    // The end of an empty element has no bytes of its own: its tag was its start.
    const bool empty = tagSize() == 0;
    element.innerEnd = empty ? element.inner : inText(place());
    element.end = empty ? element.inner : inText(place() + tagSize());
    if (depth_ == 0) copyUpTo(copied_ + element.end - object_.text.size());
  }

  std::string_view document_;
  std::string_view root_;
  XML_Parser parser_ = nullptr;
  std::exception_ptr failure_;
  ObjectText object_;
  std::string designed_;           // the prefix of the designer's attributes, with its colon
  std::vector<std::size_t> open_;  // of the elements kept
  std::uint32_t depth_ = 0;
  std::size_t copied_ = 0;
};

}  // namespace

const TextElement* ObjectText::child(std::size_t parent, std::string_view name) const {
  const std::uint32_t depth = elements[parent].depth + 1;
  for (std::size_t i = parent + 1; i < elements.size() && elements[i].depth >= depth; ++i)
    if (elements[i].depth == depth && elements[i].name == name) return &elements[i];
  return nullptr;
}

ObjectText readObjectText(const std::string& path, std::string_view root) {
  const FileText file = readFileText(path);
  if (!file.error.empty()) throw BrokenObject("it cannot be read: " + file.error);
  return Cutter(file.text, root).cut();
}

}  // namespace host
