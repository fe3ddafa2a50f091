#pragma once

#include "framework/std/file.h"

namespace tav {

/// A temporary folder, removed with all that is in it at the end of its life, or by endUnfinishedWork(). It
/// is locked meanwhile: those of the same prefix whose processes were killed are removed with the making of
/// the next.
class TAV_API TemporaryFolder {
 public:
  /// Makes it as TAVFile::makeTempDir() does.
  explicit TemporaryFolder(const TAVString& prefix);
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const TAVFile& folder() const noexcept { return folder_; }

 private:
  TAVFile folder_;
  int descriptor_ = -1;
};

}  // namespace tav
