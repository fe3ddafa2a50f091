#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/dom/byte_source.h"
#include "framework/dom/document_failure.h"
#include "framework/dom/tree_builder.h"
#include "framework/std/log.h"
#include "framework/std/string.h"

struct XML_ParserStruct;

namespace tav {

/// One run of Expat over a document or what is left of it. It reads every document there is, and its words
/// and places are those of every fault.
class ExpatRun {
 public:
  ExpatRun(TreeBuilder& tree, TAVLog* log, std::string_view document);
  ExpatRun(const ExpatRun&) = delete;
  ExpatRun& operator=(const ExpatRun&) = delete;
  ~ExpatRun();

  /// Lets the run begin inside a document of UTF-8, at this place, with the elements of the tree open.
  void enter(DocumentPlace place);
  /// Reads to the end of the document.
  void read(ByteSource& source);

 private:
  struct Callbacks;
  struct FreeParser {
    void operator()(XML_ParserStruct* parser) const noexcept;
  };

  void feedEntrance(std::string_view tags);
  void setHandlers();
  void feed(ByteSource& source, bool& last);
  void start(const char* name, const char** attributes);
  std::string_view defaultValue(const char* value);
  void addText(std::string_view text);
  void countExpansion(std::size_t bytes);
  void warn(std::string_view text) const;
  void stop(std::string_view cause);
  [[nodiscard]] TAVString causeOf(int error) const;
  [[nodiscard]] DocumentPlace place() const;

  TreeBuilder& tree_;
  TAVLog* log_;
  std::string_view document_;
  std::unique_ptr<XML_ParserStruct, FreeParser> parser_;
  DocumentPlace begin_;         // in the document
  std::uint64_t entrance_ = 0;  // bytes that only open what is open where the run begins
  std::uint64_t fed_ = 0;
  std::vector<TagAttribute> attributes_;
  std::unordered_map<const char*, std::string_view> defaults_;  // attribute values of the document type
  bool hasType_ = false;         // whether there is a document type, which may make more of the document
  std::uint64_t expansion_ = 0;  // bytes that came from it
  std::int64_t lastPlace_ = -1;  // in the document, of the last event that was counted
  std::string cause_;            // why a handler stopped the parser, and where
  DocumentPlace causePlace_;
  std::exception_ptr failure_;
};

}  // namespace tav
