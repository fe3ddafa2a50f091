#pragma once

// User properties: values that elements of a model carry under names of a bridge's own.

#include "framework/model/classes/model.h"
#include "framework/model/classes/property_type.h"
#include "framework/model/classes/property_value.h"

/// The model's user property of this name, design level and group for elements of exactly this element type.
/// When there is none it is made with this data type and description if `create` is set, else the result is
/// null. Constant cost, unless several properties share a name: then it may walk the model's property types.
TAV_API TAVPropertyType* fetchPropertyType(TAVModel& model, TAVElementType elementType, const TAVString& name,
                                           TAVDesignLevelType designLevel, const TAVString& group,
                                           const TAVString& description, const TAVString& dataType,
                                           bool create);

/// Gives an element a value for a property, in place of the one it may have had.
TAV_API void setPropertyValue(TAVPropertyType& propertyType, const TAVString& value, TAVElement& element);

/// The element's value for a property; empty when it has none.
TAV_API const TAVString& getPropertyValue(const TAVPropertyType& propertyType, const TAVElement& element);
