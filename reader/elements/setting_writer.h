#pragma once

#include <string>
#include <string_view>

#include "framework/details/details.h"

namespace tav {

/// Writes settings under the path from their item to where they stand: "ProactiveCaching.Latency". Of what is
/// folded all values become the value of one setting.
class SettingWriter {
 public:
  explicit SettingWriter(Details& details) : details_(details) {}

  /// The place to go back to.
  [[nodiscard]] std::size_t place() const noexcept { return path_.size(); }
  void goBack(std::size_t place) { path_.resize(place); }
  void goDown(std::string_view name) { (path_ += name) += '.'; }

  /// Names of settings begin here from now on; gives where they began.
  std::size_t begin();
  void beginAt(std::size_t place) noexcept { begin_ = place; }

  void set(ItemId item, std::string_view name, std::string_view value);

  [[nodiscard]] bool isFolding() const noexcept { return isFolding_; }
  void beginFold(std::string_view name, std::string_view label);
  /// Ends the fold; a label alone is a setting only with `withLabel`.
  void endFold(ItemId item, bool withLabel);

 private:
  Details& details_;
  std::string path_;
  std::size_t begin_ = 0;
  bool isFolding_ = false;
  std::string fold_;
  std::size_t foldStart_ = 0;  // in the path
  std::size_t labelSize_ = 0;
};

}  // namespace tav
