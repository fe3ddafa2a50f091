#pragma once

#include "framework/model/model.h"

namespace tav {

/// Loads a saved document with all that it holds. Throws a TAVException "[TAVXML_F0002] path:line: cause" for
/// a document that is no saved model, and what the XML parser throws for one that is not well-formed.
TAV_API Owned<TAVMultiModel> loadMultiModel(const TAVString& path);

/// Loads the one model of a saved document.
TAV_API Owned<TAVModel> loadModel(const TAVString& path);
/// The same from a document in memory; `name` stands for it in messages.
TAV_API Owned<TAVModel> loadModelText(std::string_view text, std::string_view name);

/// Whether the file's root element is that of a saved model. False also for a file that cannot be read or
/// whose first tag cannot be parsed. Reads no further than that tag.
TAV_API bool isSavedModel(const TAVString& path);

}  // namespace tav
