#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/api.h"
#include "framework/std/file.h"
#include "framework/std/option.h"

namespace tav {

/// A text as a field of a line that Java reads, with \\, \n, \r and \t for what would break the line; and
/// back.
TAV_API std::string escapedField(std::string_view text);
TAV_API std::string unescapedField(std::string_view text);

/// Options written for an importer: a line "key<TAB>value" each, in UTF-8, with \\, \n, \r and \t for the
/// characters that would break a line.
///
/// Java cannot name a file whose path is no UTF-8. For the value of an option of type file that is none, a
/// link in the same folder stands in; original() turns what the importer says of it back.
class OptionFile {
 public:
  /// Writes the options in a new file of the folder, readable by its owner alone. Throws a TAVException
  /// "[TAVJAVA_F0003] path: cause".
  OptionFile(const TAVFile& folder, const TAVOptionList& options);

  [[nodiscard]] const TAVString& getPath() const noexcept { return path_; }
  /// `text` with the paths of links replaced by what they stand for.
  [[nodiscard]] TAVString original(TAVString text) const;

 private:
  TAVString handedValue(const TAVFile& folder, const TAVOption& option);

  TAVString path_;
  std::vector<std::pair<TAVString, TAVString>> links_;  // the link, and what it stands for
};

}  // namespace tav
