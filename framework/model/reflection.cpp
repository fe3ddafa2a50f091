#include "framework/model/reflection.h"

#include <unordered_map>

#include "framework/model/link.h"

namespace tav {
namespace {

using Copies = std::unordered_map<const TAVObject*, TAVObject*>;

void copyAttributes(const TAVObject& from, TAVObject& to) {
  to.setName(from.getName());
  for (const AttributeRow* row : classInfo(from.classId()).attributes) row->set(to, row->get(from));
}

void copyReferences(const Copies& copies) {
  for (const auto& [original, copy] : copies) {
    for (const LinkInfo& link : classInfo(original->classId()).links) {
      if (link.row->kind != LinkKind::reference) continue;
      // Named anew: clang 14 cannot capture what a structured binding names.
      forEachAt(*link.row, *original, [&, &from = *copy](TAVObject& target) {
        const auto inside = copies.find(&target);
        linkObjects(link.number, from, inside == copies.end() ? target : *inside->second);
      });
    }
  }
}

}  // namespace

bool isDefault(const Value& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return text->empty();
  if (const auto* store = std::get_if<TAVDataStore>(&value)) return *store == TAVDataStore{};
  if (const auto* number = std::get_if<std::int64_t>(&value)) return *number == 0;
  return !std::get<bool>(value);
}

Owned<TAVObject> copyTree(const TAVObject& object) {
  Owned<TAVObject> root = classInfo(object.classId()).create();
  Copies copies{{&object, root.get()}};
  std::vector<const TAVObject*> waiting{&object};
  while (!waiting.empty()) {
    const TAVObject& original = *waiting.back();
    waiting.pop_back();
    TAVObject& copy = *copies.at(&original);
    copyAttributes(original, copy);
    for (const LinkInfo& link : classInfo(original.classId()).parts) {
      forEachAt(*link.row, original, [&](TAVObject& part) {
        Owned<TAVObject> made = classInfo(part.classId()).create();
        linkObjects(link.number, copy, *made);
        copies.emplace(&part, made.release());
        waiting.push_back(&part);
      });
    }
  }
  copyReferences(copies);
  return root;
}

void failOutOfRange(std::int64_t value, std::string_view member) {
  fail("TAV_F0001", std::to_string(value) + " does not fit " + std::string(member.substr(1)));
}

void failInvalid(std::string_view enumeration, int value) {
  fail("TAV_F0002", std::to_string(value) + " is no value of " + std::string(enumeration));
}

}  // namespace tav
