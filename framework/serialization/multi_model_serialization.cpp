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
  tav::Owned<TAVMultiModel> root = tav::loadMultiModel(file.getPath());
  if (!root->isInstanceOf(elementType)) return nullptr;
  return root;
}

TAVModel* TAVMultiModelSerialization::loadModel(TAVModelContent& content) {
  return content.models.first();
}
