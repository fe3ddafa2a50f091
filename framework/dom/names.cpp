#include "framework/dom/names.h"

namespace tav {

DomNames::DomNames(Arena& arena) : arena_(arena) {
  prefixIndex("");  // kNoPrefix
  spaces_[prefixIndex("xml")] = keepSpace("http://www.w3.org/XML/1998/namespace");
  spaces_[prefixIndex("xmlns")] = keepSpace("http://www.w3.org/2000/xmlns/");
}

void DomNames::closeScope(Scope scope) {
  while (declared_.size() > scope) {
    spaces_[declared_.back().prefix] = declared_.back().before;
    declared_.pop_back();
  }
}

void DomNames::declare(std::string_view attribute, std::string_view value) {
  constexpr std::string_view kDeclares = "xmlns";
  if (!attribute.starts_with(kDeclares)) return;
  attribute.remove_prefix(kDeclares.size());
  if (!attribute.empty() && (attribute.front() != ':' || attribute.size() == 1)) return;
  const std::size_t prefix = prefixIndex(attribute.empty() ? attribute : attribute.substr(1));
  declared_.push_back({prefix, spaces_[prefix]});
  spaces_[prefix] = keepSpace(value);
}

const DomName* DomNames::tag(std::string_view written) {
  Written& name = find(written);
  const std::string_view space = spaces_[name.prefix];
  if (!name.lastTag || name.lastTag->space.data() != space.data()) name.lastTag = make(name, space);
  return name.lastTag;
}

const DomName* DomNames::attribute(std::string_view written) {
  Written& name = find(written);
  const std::string_view space = name.prefix == kNoPrefix ? std::string_view() : spaces_[name.prefix];
  if (!name.lastAttribute || name.lastAttribute->space.data() != space.data())
    name.lastAttribute = make(name, space);
  return name.lastAttribute;
}

// The names of a document come in few sequences, again and again: the one that followed last time is tried
// before anything is hashed.
DomNames::Written& DomNames::find(std::string_view text) {
  Written* const guess = last_ ? last_->follower : nullptr;
  Written& found = guess && guess->text == text ? *guess : findHashed(text);
  if (last_) last_->follower = &found;
  last_ = &found;
  return found;
}

DomNames::Written& DomNames::findHashed(std::string_view text) {
  const auto found = written_.find(text);
  if (found != written_.end()) return found->second;
  const std::string_view kept = arena_.copy(text);
  const std::size_t colon = kept.find(':');
  const bool hasPrefix = colon != kept.npos && colon > 0 && colon + 1 < kept.size();
  const Written written{kept, hasPrefix ? kept.substr(colon + 1) : kept,
                        hasPrefix ? prefixIndex(kept.substr(0, colon)) : kNoPrefix};
  return written_.emplace(kept, written).first->second;
}

std::size_t DomNames::prefixIndex(std::string_view prefix) {
  const auto found = prefixes_.find(prefix);
  if (found != prefixes_.end()) return found->second;
  spaces_.emplace_back();
  return prefixes_.emplace(arena_.copy(prefix), spaces_.size() - 1).first->second;
}

std::string_view DomNames::keepSpace(std::string_view space) {
  if (space.empty()) return {};
  const auto found = keptSpaces_.find(space);
  return found != keptSpaces_.end() ? *found : *keptSpaces_.insert(arena_.copy(space)).first;
}

const DomName* DomNames::make(const Written& written, std::string_view space) {
  const DomName*& name = made_[{written.text.data(), space.data()}];
  if (name) return name;
  void* place = arena_.allocate(sizeof(DomName), alignof(DomName));
  name = std::construct_at(static_cast<DomName*>(place),
                           DomName{written.text, written.local, space, hashName(written.text)});
  return name;
}

}  // namespace tav
