#include "framework/details/details.h"

#include <algorithm>

namespace tav {
namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

constexpr std::array<std::string_view, kOpenNameStateCount> kOpenNameStates{"exists", "mistake", "beyond"};

}  // namespace

std::string_view openNameStateText(OpenNameState state) noexcept {
  return kOpenNameStates[static_cast<std::size_t>(state)];
}

std::optional<OpenNameState> openNameStateOf(std::string_view text) noexcept {
  const auto found = std::find(kOpenNameStates.begin(), kOpenNameStates.end(), text);
  if (found == kOpenNameStates.end()) return std::nullopt;
  return static_cast<OpenNameState>(found - kOpenNameStates.begin());
}

ItemId Details::itemOf(const TAVModelObject& object) {
  const auto [place, isNew] = byObject_.tryEmplace(&object, static_cast<ItemId>(items_.size()));
  if (isNew) items_.push_back({&object, kNoItem, ObjectKind::other, {}, {}, {}});
  return *place;
}

ItemId Details::find(const TAVModelObject& object) const {
  const ItemId* place = byObject_.find(&object);
  return place ? *place : kNoItem;
}

ItemId Details::add(ObjectKind kind, ItemId owner, std::string_view name, std::string_view text,
                    std::string_view language) {
  items_.push_back({nullptr, owner, kind, keep(name), keep(text), keepName(language)});
  return static_cast<ItemId>(items_.size() - 1);
}

void Details::setText(ItemId item, std::string_view text, std::string_view language) {
  items_[item].text = keep(text);
  items_[item].language = keepName(language);
}

void Details::relate(RelationKind kind, ItemId from, ItemId to, std::string_view text) {
  relations_.push_back({kind, from, to, keepName(text)});
}

void Details::set(ItemId item, std::string_view name, std::string_view value) {
  settings_.push_back({item, keepName(name), keep(value)});
}

void Details::addOpenName(ItemId item, std::string_view name, OpenNameState state, std::string_view note) {
  openNames_.push_back({item, state, keep(name), keep(note)});
}

void Details::passOver(PassedOver what, std::size_t count) {
  passedOver_[static_cast<std::size_t>(what)] += count;
}

std::size_t Details::passedOver(PassedOver what) const noexcept {
  return passedOver_[static_cast<std::size_t>(what)];
}

void Details::replace(const TAVModelObject& object, const TAVModelObject& now) {
  const ItemId* place = byObject_.find(&object);
  if (!place) return;
  const ItemId item = *place;
  byObject_.erase(&object);
  items_[item].object = &now;
  byObject_.tryEmplace(&now, item);
}

void Details::release(const TAVModelObject& object, ObjectKind kind, ItemId owner) {
  const ItemId* place = byObject_.find(&object);
  if (!place) return;
  items_[*place] = {nullptr, owner, kind, keep(object.getName()), {}, {}};
  byObject_.erase(&object);
}

/// Blocks never grow beyond what they were made for, so texts in them stay where they are.
SizedText Details::keep(std::string_view text) {
  if (text.empty()) return {};
  const std::size_t needed = sizeof(TextSize) + requireTextSize(text.size());
  if (needed > free_.size()) {
    const std::size_t size = std::max(needed, kBlockSize);
    free_ = {blocks_.emplace_back(std::make_unique_for_overwrite<char[]>(size)).get(), size};
  }
  const SizedText kept(free_.data());
  writeSizedText(free_.data(), static_cast<TextSize>(text.size()), text);
  free_ = free_.subspan(needed);
  return kept;
}

/// A text that many have, kept once.
SizedText Details::keepName(std::string_view name) {
  if (name.empty()) return {};
  if (const auto known = names_.find(name); known != names_.end()) return known->second;
  const SizedText kept = keep(name);
  names_.emplace(kept, kept);
  return kept;
}

}  // namespace tav
