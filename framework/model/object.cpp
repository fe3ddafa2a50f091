#include "framework/model/object.h"

#include "framework/model/class_info.h"

TAV_Object::~TAV_Object() = default;

std::string_view TAV_Object::getMetaClass() const noexcept {
  return tav::classInfo(classId_).name;
}
