#include "framework/dom/dom.h"

#include "framework/dom/document_failure.h"
#include "framework/dom/parser.h"
#include "framework/std/exception.h"
#include "framework/std/file_reader.h"

TAVDOM::TAVDOM(TAVLog* log) : log_(log), storage_(std::make_unique<tav::DomStorage>()) {}

TAVDOM::~TAVDOM() = default;

const TAVDOMElement* TAVDOM::parseFile(const TAVFile& file) {
  const std::string_view path = file.getPath();
  tav::FileReader reader;
  if (!reader.open(file.getPath().str())) tav::failForDocument(path, reader.getError());
  tav::ByteSource source(
      [&](char* buffer, std::size_t capacity) {
        const std::size_t count = reader.read(buffer, capacity);
        if (!reader.getError().empty()) tav::failForDocument(path, reader.getError());
        return count;
      },
      reader.getSize(), progress_);
  return tav::parseDocument(source, {*storage_, unkept_}, log_, path);
}

TAVDOM::Place TAVDOM::endOf(const TAVDOMElement& element) const {
  const auto children = element.getElements();
  const auto [block, offset] = storage_->elements.placeBehind(children.data(), children.size_bytes());
  return {block, offset};
}

TAVDOM::Place TAVDOM::release(Place from, const TAVDOMElement& upTo) {
  const auto [block, offset] =
      storage_->elements.release({from.block, from.offset}, upTo.getElements().data());
  return {block, offset};
}

const TAVDOMElement* TAVDOM::parseText(std::string_view text, std::string_view name) {
  std::string_view rest = text;
  tav::ByteSource source(
      [&rest](char* buffer, std::size_t capacity) {
        const std::size_t count = rest.copy(buffer, capacity);
        rest.remove_prefix(count);
        return count;
      },
      text.size(), progress_);
  return tav::parseDocument(source, {*storage_, unkept_}, log_, name);
}
