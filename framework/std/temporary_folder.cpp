#include "framework/std/temporary_folder.h"

#include <filesystem>

#include "framework/std/interruption.h"

namespace tav {

TemporaryFolder::TemporaryFolder(const TAVString& prefix) {
  const HeldSignals held;
  folder_ = TAVFile::makeTempDir(prefix);
  enlistTemporary(folder_.getPath().c_str());
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;  // this also runs while an exception passes
  std::filesystem::remove_all(folder_.getPath().str(), ignored);
  strikeTemporary(folder_.getPath().c_str());
}

}  // namespace tav
