#pragma once

// Loading what an importer wrote, step by step: the document first, then the model out of one of its
// contents.

#include <memory>

#include "framework/details/details.h"
#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"

/// What a serialization may do to save space; there is nothing that it does.
enum class MixOptimizationLevel : std::int32_t { none = 0 };

/// The saved documents of a folder, the first of which is `main.xml`.
class TAV_API TAVMultiModelSerialization {
 public:
  /// `file` is the folder, or the document itself. The log is told nothing and may be null: what is wrong
  /// with a document is thrown.
  TAVMultiModelSerialization(TAVLog* log, const TAVFile& file, MixOptimizationLevel level);

  /// The document that the serialization was built on.
  [[nodiscard]] const TAVFile& getFile() const noexcept { return file_; }

  /// Loads a document with all that it holds; null when its root is no object of the element type. The flag
  /// has no meaning. Throws a TAVException as tav::loadDocument() does.
  [[nodiscard]] tav::Owned<TAVObject> load(const TAVFile& file, TAVElementType elementType, bool flag);
  /// The model of a content of a loaded document, whose it stays until TAVModel::removeContent(); null when
  /// it holds none.
  [[nodiscard]] TAVModel* loadModel(TAVModelContent& content);
  /// The details of the document that was loaded last, the caller's from now on; null when it has none.
  [[nodiscard]] std::unique_ptr<tav::Details> takeDetails() noexcept { return std::move(details_); }

 private:
  TAVFile file_;
  std::unique_ptr<tav::Details> details_;
};
