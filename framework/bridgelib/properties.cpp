#include "framework/bridgelib/properties.h"

#include "framework/model/model.h"

namespace {

/// The first object of this name that `fits`, or null. The walk is for names that several objects share.
template <class T, class Fits> T* findNamed(const tav::Parts<T>& parts, const TAVString& name, Fits fits) {
  T* first = parts.get(name);
  if (!first || fits(*first)) return first;
  for (T& object : parts)
    if (object.getName() == name && fits(object)) return &object;
  return nullptr;
}

TAVPropertyValue* findValue(const TAVPropertyType& type, const TAVElement& element) {
  return findNamed(element.propertyValues, type.getName(),
                   [&](const TAVPropertyValue& value) { return value.propertyType.get() == &type; });
}

}  // namespace

TAVPropertyType* fetchPropertyType(TAVModel& model, TAVElementType elementType, const TAVString& name,
                                   TAVDesignLevelType designLevel, const TAVString& group,
                                   const TAVString& description, const TAVString& dataType, bool create) {
  TAVPropertyType* found = findNamed(model.propertyTypes, name, [&](const TAVPropertyType& type) {
    return type.elementType == elementType && type.designLevel.value() == designLevel.value() &&
           type.group == group;
  });
  if (found || !create) return found;
  auto made = tav::make<TAVPropertyType>(name);
  made->elementType = elementType;
  made->designLevel = designLevel;
  made->group = group;
  made->description = description;
  made->dataType = dataType;
  return &tav::add<&TAVModel::propertyTypes>(model, std::move(made));
}

void setPropertyValue(TAVPropertyType& propertyType, const TAVString& value, TAVElement& element) {
  if (TAVPropertyValue* present = findValue(propertyType, element)) {
    present->value = value;
    return;
  }
  // The property's name on the value lets an element with very many values find one without a walk.
  auto& made =
      tav::add<&TAVElement::propertyValues>(element, tav::make<TAVPropertyValue>(propertyType.getName()));
  made.value = value;
  tav::link<&TAVPropertyValue::propertyType>(made, propertyType);
}

const TAVString& getPropertyValue(const TAVPropertyType& propertyType, const TAVElement& element) {
  const TAVPropertyValue* present = findValue(propertyType, element);
  return present ? present->value : TAVString::getEmptyString();
}
