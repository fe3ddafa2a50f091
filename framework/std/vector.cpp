#include "framework/std/vector.h"

TAVVector::~TAVVector() = default;

void TAVVector::add(void* object, bool /*flag*/, Iterator* /*iterator*/) {
  objects_.push_back(object);
  ++count_;
}
