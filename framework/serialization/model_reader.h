#pragma once

#include <memory>

#include "framework/details/details.h"
#include "framework/model/model.h"

namespace tav {

/// A saved document with all that it holds. The details, null where it has none, are of its first model.
struct SavedDocument {
  Owned<TAVMultiModel> contents;
  std::unique_ptr<Details> details;
};

/// A model out of a saved document, with what its definition says beyond it: null where the document has
/// none.
struct SavedModel {
  Owned<TAVModel> model;
  std::unique_ptr<Details> details;
};

/// Loads a saved document. Throws a TAVException "[TAVXML_F0002] path:line: cause" for a document that is no
/// saved model, and what the XML parser throws for one that is not well-formed.
TAV_API SavedDocument loadDocument(const TAVString& path);

/// Loads the one model of a saved document.
TAV_API SavedModel loadSavedModel(const TAVString& path);
/// The same from a document in memory; `name` stands for it in messages.
TAV_API SavedModel loadSavedModelText(std::string_view text, std::string_view name);
/// The same without the details.
TAV_API Owned<TAVModel> loadModel(const TAVString& path);
TAV_API Owned<TAVModel> loadModelText(std::string_view text, std::string_view name);

/// Whether the file's root element is that of a saved model. False also for what is no file, or whose first
/// tag cannot be parsed. Reads no further than that tag. Throws "[TAVDOM_F0001] path: cause" for a file that
/// cannot be read.
TAV_API bool isSavedModel(const TAVString& path);

}  // namespace tav
