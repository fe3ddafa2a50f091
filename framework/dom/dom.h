#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "framework/dom/element.h"
#include "framework/dom/unkept_content.h"
#include "framework/std/file.h"
#include "framework/std/log.h"

namespace tav {
struct DomStorage;
}

/// Parses documents and owns their trees.
///
/// It reads XML 1.0 in UTF-8, UTF-16, US-ASCII, ISO-8859-1 and every other encoding of one byte a character
/// that the C library knows by its declared name, such as windows-1252; all texts are given in UTF-8. Where
/// the declaration names one encoding of Unicode and the document is in another, its byte order mark counts,
/// or else its first bytes. A prefix that is never declared stands for no namespace.
///
/// Nothing but the document itself is ever read. A document type's external part is passed over, with a
/// warning in the log; a reference to an external entity, or in element content to an entity that is not
/// declared, is an error. (Only in an attribute value, and only under a document type with an external part,
/// is an undeclared entity dropped silently.) Entities declared in the document are replaced: with the
/// attributes that only the document type gives, they may make 1 MB of text in the whole
/// document, and more is an error.
///
/// Limits: 4 GB of text in one element, 2,147,483,647 children of one element, 1 GB in one tag. Depth is
/// limited by memory only.
class TAV_API TAVDOM {
 public:
  /// Called after each megabyte with the bytes read so far and the size of the document.
  using Progress = std::function<void(std::uint64_t bytesRead, std::uint64_t bytesTotal)>;

  /// A parser that warns in `log`, which may be null and otherwise outlives it.
  explicit TAVDOM(TAVLog* log);
  TAVDOM(const TAVDOM&) = delete;
  TAVDOM& operator=(const TAVDOM&) = delete;
  ~TAVDOM();

  void setProgress(Progress progress) { progress_ = std::move(progress); }
  /// What it leaves out of documents from here on; those elements have neither text nor child elements.
  void setUnkept(tav::UnkeptContent unkept) { unkept_ = unkept; }

  /// Parses the whole file and gives its root element, never null; it lives as long as the TAVDOM, also when
  /// more documents are parsed. Throws a TAVException "[TAVDOM_F0001] path:line:column: cause" when the file
  /// is not well-formed, empty or blank, and "[TAVDOM_F0001] path: cause" when it cannot be read. Lines and
  /// columns count from 1, columns in characters.
  const TAVDOMElement* parseFile(const TAVFile& file);
  /// The same for a document in memory, which `name` stands for in messages.
  const TAVDOMElement* parseText(std::string_view text, std::string_view name);

  /// A place in a document that has been parsed, for release().
  struct Place {
    std::size_t block;
    std::size_t offset;
  };
  /// Where an element ends that has child elements.
  [[nodiscard]] Place endOf(const TAVDOMElement& element) const;
  /// Gives back memory of the lists of child elements that end behind `from` and before the list of `upTo`,
  /// which ends behind `from`, too. Nobody may look at the children of an element with such a list any more,
  /// nor at those of `upTo`; all that is said by the elements around them, names and texts of any element
  /// stay. Returns `from` for the next time.
  Place release(Place from, const TAVDOMElement& upTo);

 private:
  TAVLog* log_;
  Progress progress_;
  tav::UnkeptContent unkept_;
  std::unique_ptr<tav::DomStorage> storage_;
};
