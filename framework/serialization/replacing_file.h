#pragma once

// Output that is either whole or not there.

#include <sys/types.h>

#include <memory>
#include <ostream>

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

 private:
  class Buffer;
  std::unique_ptr<Buffer> buffer_;
  std::unique_ptr<std::ostream> stream_;
};

/// Removes what a process that has ended, of its own file system and process numbers, left unfinished beside
/// `target`, as after it was killed. A folder that cannot be read is left alone.
TAV_API void removeUnfinished(const TAVString& target, pid_t process);

}  // namespace tav
