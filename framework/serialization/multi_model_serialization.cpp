#include "framework/serialization/multi_model_serialization.h"

#include <filesystem>

#include "framework/serialization/model_reader.h"

TAVMultiModelSerialization::TAVMultiModelSerialization(TAVLog* /*log*/, const TAVFile& file,
                                                       MixOptimizationLevel /*level*/)
    : file_(file) {
  std::error_code error;  // what cannot be asked is no folder; loading it will say what is wrong
  if (std::filesystem::is_directory(file.getPath().str(), error)) file_ = file.getFile("main.xml");
}

tav::Owned<TAVObject> TAVMultiModelSerialization::load(const TAVFile& file, TAVElementType elementType,
                                                       bool /*flag*/) {
  tav::SavedDocument document = tav::loadDocument(file.getPath());
  if (!document.contents->isInstanceOf(elementType)) return nullptr;
  details_ = std::move(document.details);
  return std::move(document.contents);
}

TAVModel* TAVMultiModelSerialization::loadModel(TAVModelContent& content) {
  return content.models.first();
}
