#pragma once

// Output that is either whole or not there.

#include <memory>
#include <ostream>
#include <span>

#include "framework/api.h"
#include "framework/std/string.h"

namespace tav {

/// Writes a file beside `target` and puts it in place with commit(). Without commit, or when anything
/// throws, the target is untouched and nothing is left behind, nor by endUnfinishedWork(). A link is followed
/// to the file it names, which need not be there; a target that exists and is no regular file (a terminal, a
/// pipe) is written to as it is.
///
/// Every failure is a TAVException "[TAVXML_F0001] path: cause".
class TAV_API ReplacingFile {
 public:
  explicit ReplacingFile(const TAVString& target);
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;
  ~ReplacingFile();

  /// Where to write. Its writes throw when the disk does not take them.
  std::ostream& stream() noexcept;
  /// Puts the file in place once everything is on disk.
  void commit();
  /// The same for several, of which all are put in place or none. Where the file system cannot exchange two
  /// files, those that were put in place before one that failed stay.
  static void commitAll(std::span<ReplacingFile* const> files);

 private:
  class Buffer;
  std::unique_ptr<Buffer> buffer_;
  std::unique_ptr<std::ostream> stream_;
};

/// Removes what processes that have ended left unfinished beside `target`, as after they were killed. A
/// ReplacingFile begins with it. Files of others, and those that cannot be looked at, are left alone.
TAV_API void removeUnfinished(const TAVString& target);

}  // namespace tav
