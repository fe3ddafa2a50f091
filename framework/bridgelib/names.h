#pragma once

#include "framework/model/classes/model_object.h"

/// `text` without the one pair of double quotes or square brackets that encloses it, if one does. What stands
/// inside is left as it is.
TAV_API TAVString removeQuotes(const TAVString& text);

/// The object's physical name, empty when it has none.
TAV_API const TAVString& getPhysicalName(const TAVModelObject& object);
