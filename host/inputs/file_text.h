#pragma once

#include <string>
#include <string_view>

namespace host {

/// The whole of a regular file as UTF-8 without a byte order mark. Text in UTF-16 is converted, with its mark
/// or, where the first character tells it, without one. When the file cannot be read the text is empty and
/// `error` says why.
struct FileText {
  std::string text;
  std::string error;
};
FileText readFileText(const std::string& path);

/// `bytes` converted in the same way.
std::string asUtf8(std::string bytes);

}  // namespace host
