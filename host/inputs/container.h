#pragma once

#include <string>
#include <string_view>

namespace host {

/// What a zip archive holds: the definition of a template (.pbit), or why there is none.
struct Container {
  std::string definition;  ///< in UTF-8
  std::string cause;
  bool hasReport = false;
};

/// Reads the model's definition out of an archive, in memory, and nothing else of it. `name` stands for it in
/// failures. Throws Message::containerNotRead for one that is damaged, locked or grows beyond measure.
Container readContainer(const std::string& path, const std::string& name);

/// Whether bytes are the beginning of such an archive.
bool isContainer(std::string_view beginning);

}  // namespace host
