#include "framework/std/container.h"

#include <memory>

_TAVContainer::~_TAVContainer() = default;

void TAVContainer::empty() {
  objects_.clear();
  count_ = 0;
}

TAVContainer::Iterator* TAVContainer::newIterator(bool /*flag*/) const {
  return std::make_unique<Iterator>(*this).release();
}

void TAVContainer::deleteIterator(Iterator* iterator) const {
  const std::unique_ptr<Iterator> owner(iterator);
}

void* TAVContainer::hole() noexcept {
  static char mark;
  return &mark;
}

std::size_t TAVContainer::Iterator::following() const noexcept {
  const std::vector<void*>& objects = container_->objects_;
  std::size_t i = position_ == kBeforeFirst ? 0 : position_ + 1;
  while (i < objects.size() && objects[i] == hole()) ++i;
  return i;
}

bool TAVContainer::Iterator::hasNext() const noexcept {
  return following() < container_->objects_.size();
}

void* TAVContainer::Iterator::next() noexcept {
  position_ = following();
  if (position_ < container_->objects_.size()) return container_->objects_[position_];
  position_ = container_->objects_.size() - 1;  // stays at the end, and goes on if the container grows
  return nullptr;
}

void* TAVContainer::Iterator::get() const noexcept {
  if (position_ >= container_->objects_.size() || container_->objects_[position_] == hole()) return nullptr;
  return container_->objects_[position_];
}
