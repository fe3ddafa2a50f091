#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tav {

/// What a name may become that somebody has begun to type: qualified names, paths behind a "/", and names as
/// they are. As paths of files are, they are completed part by part, so that there are few at a time.
class NameCompletion {
 public:
  explicit NameCompletion(std::string typed) : typed_(std::move(typed)) {}

  /// Adds what a node is called, if it begins so. What holds control characters cannot be typed and is left
  /// out.
  void add(std::string_view name, std::string_view qualifiedName, std::string_view path);

  /// As far as the end of the part in which they differ, in order; none where there are too many to read.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  void addText(std::string_view text);
  [[nodiscard]] bool isPath() const { return !typed_.empty() && typed_.front() == '/'; }

  std::string typed_;
  std::set<std::string, std::less<>> texts_;
};

}  // namespace tav
