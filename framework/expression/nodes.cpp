#include "framework/expression/nodes.h"

#include "framework/std/dotted_name.h"

#include "framework/expression/lexer.h"

namespace {

std::string_view withoutQuotes(std::string_view part) {
  const bool enclosed = part.size() >= 2 && ((part.front() == '[' && part.back() == ']') ||
                                             (part.front() == '"' && part.back() == '"'));
  return enclosed ? part.substr(1, part.size() - 2) : part;
}

template <class T> const T* at(const std::vector<T>& list, std::int32_t position) {
  return position < 0 || static_cast<std::size_t>(position) >= list.size()
             ? nullptr
             : &list[static_cast<std::size_t>(position)];
}

}  // namespace

TAVElementNode::TAVElementNode(std::string_view reference) : TAVExpressionNode(reference), name_(reference) {
  for (std::size_t place = 0; place < reference.size();) {
    const std::size_t length = tav::namePartLength(reference.substr(place));
    const std::string_view part = reference.substr(place, length);
    parts_.emplace_back(part, withoutQuotes(part));
    place += length + 1;
  }
}

const TAVElementNamePart* TAVElementNode::getElementNamePartByPosition(std::int32_t position) const noexcept {
  return at(parts_, position);
}

const TAVExpressionNode* TAVOperationNode::getExpressionNodeByPosition(std::int32_t position) const noexcept {
  return at(arguments_, position);
}
