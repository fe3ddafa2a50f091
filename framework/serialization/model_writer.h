#pragma once

#include <ostream>

#include "framework/details/details.h"
#include "framework/model/model.h"
#include "framework/serialization/passwords.h"

namespace tav {

/// Writes a model as an XML document: each object an element named after its class, its attributes and
/// references as attributes, its parts inside an element named after their role. docs/model.xsd describes it.
/// Details, where there are any, are a second content of the same document.
TAV_API void writeModel(const TAVModel& model, std::ostream& out, const Details* details = nullptr,
                        Passwords passwords = Passwords::kept);

/// Writes a model to a file, which is afterwards either the whole new document or, when a TAVException is
/// thrown, what it was before.
TAV_API void saveModel(const TAVModel& model, const TAVString& path, const Details* details = nullptr);

}  // namespace tav
