#pragma once

// A path, and when it is opened the text behind it line by line.

#include <memory>

#include "framework/std/string.h"

/// A handle on a file or folder by its path. A copy is a closed handle on the same path.
///
/// Text is read as UTF-8, with or without a byte order mark, or as UTF-16 of either byte order with one; what
/// is given is always UTF-8 without the mark. Bytes that are no UTF-8 are given as they are, halves of UTF-16
/// characters as U+FFFD.
class TAV_API TAVFile {
 public:
  TAVFile();
  explicit TAVFile(TAVString path);
  TAVFile(const TAVFile& other);
  TAVFile(TAVFile&& other) noexcept;
  TAVFile& operator=(const TAVFile& other);
  TAVFile& operator=(TAVFile&& other) noexcept;
  ~TAVFile();

  [[nodiscard]] const TAVString& getPath() const noexcept { return path_; }
  /// Whether the path names a regular file, itself or through links.
  [[nodiscard]] bool exists() const;

  /// Opens the text for reading when `mode` is 1, the only mode there is. The result may be left alone: a
  /// file that could not be opened, or that is no regular file, is at its end at once.
  bool open(int mode);
  /// Whether no more text is to come; true when nothing is open. An error while reading ends the text, too.
  bool isEndOfFile();
  /// The next line without its end, which is "\n" or "\r\n". With a `limit` other than 0 a line longer than
  /// so many bytes comes in pieces of whole characters, one a call, so that the start of a line can be seen
  /// without having all of it in memory (limits below 4 count as 4). Empty at the end of the text.
  TAVString getFullLine(std::int64_t limit);
  /// Why the text could not be opened, or not be read to its end; empty as long as nothing went wrong.
  [[nodiscard]] TAVString getError() const;
  void close();

  /// A new folder of an unpredictable name that begins with `prefix`, open to its owner alone, in $TMPDIR or
  /// else /tmp. It is the caller's to remove. Throws a TAVException when it cannot be made.
  static TAVFile makeTempDir(const TAVString& prefix);
  /// The file `name` inside this folder.
  [[nodiscard]] TAVFile getFile(const TAVString& name) const;

 private:
  class Text;
  TAVString path_;
  std::unique_ptr<Text> text_;
  TAVString error_;  // of the last opening
};
