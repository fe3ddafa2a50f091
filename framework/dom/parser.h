#pragma once

// One run of Expat over a document, which makes the tree.

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/dom/arena.h"
#include "framework/dom/child_index.h"
#include "framework/dom/element.h"
#include "framework/dom/names.h"
#include "framework/std/log.h"

struct XML_ParserStruct;

namespace tav {

/// Where the trees of a TAVDOM lie.
struct DomStorage {
  Arena arena;
  DomNames names{arena};
};

/// Throws the TAVException for a document that cannot be read at all.
[[noreturn]] void failForDocument(std::string_view document, std::string_view cause);

/// Parses one document. What is not finished yet lies on stacks of its own: depth costs heap, never call
/// stack.
class DomParser {
 public:
  /// Gives the next bytes of the document: fewer than `capacity` only at its end.
  using Read = std::function<std::size_t(char* buffer, std::size_t capacity)>;

  /// Called after each chunk with the bytes read so far and the size of the document.
  using Progress = std::function<void(std::uint64_t bytesRead, std::uint64_t bytesTotal)>;

  DomParser(DomStorage& storage, TAVLog* log, std::string_view document);
  DomParser(const DomParser&) = delete;
  DomParser& operator=(const DomParser&) = delete;
  ~DomParser();

  const TAVDOMElement* parse(const Read& read, std::uint64_t total, const Progress& progress);

 private:
  struct Callbacks;
  struct Frame {
    TAVDOMElement element;
    std::size_t firstChild;  // in closed_
    std::size_t textStart;   // in text_
    DomNames::Scope scope;
  };

  void feed(const Read& read, std::uint64_t& fed, bool& last);
  void start(const char* name, const char** attributes);
  void readAttributes(const char** attributes, std::size_t count, TAVDOMElement& element);
  std::string_view defaultValue(const char* value);
  void addText(std::string_view text);
  void countExpansion(std::size_t bytes);
  void end();
  void placeChildren(TAVDOMElement& element, std::span<const TAVDOMElement> children);
  const ChildIndex* indexOf(std::span<const TAVDOMElement> children) const;
  void warn(std::string_view text) const;
  void stop(std::string_view cause);
  [[nodiscard]] TAVString causeOf(int error) const;
  [[noreturn]] void failAt(std::uint64_t line, std::uint64_t column, std::string_view cause) const;

  DomStorage& storage_;
  TAVLog* log_;
  std::string_view document_;
  struct FreeParser {
    void operator()(XML_ParserStruct* parser) const noexcept;
  };
  std::unique_ptr<XML_ParserStruct, FreeParser> parser_;
  std::vector<Frame> open_;
  std::vector<TAVDOMElement> closed_;  // elements whose parent is still open
  std::string text_;
  std::unordered_map<const char*, std::string_view> defaults_;  // attribute values of the document type
  bool hasType_ = false;         // whether there is a document type, which may make more of the document
  std::uint64_t expansion_ = 0;  // bytes that came from it
  std::int64_t lastPlace_ = -1;  // in the document, of the last event that was counted
  std::string cause_;            // why a handler stopped the parser, and where
  std::exception_ptr failure_;
  std::uint64_t causeLine_ = 0;
  std::uint64_t causeColumn_ = 0;
};

}  // namespace tav
