#pragma once

#include <vector>

#include "framework/std/string.h"

/// An ordered list of strings, such as the arguments of a message.
class TAV_API TAVStringArray {
 public:
  TAVStringArray() = default;

  void add(const TAVString& text) { texts_.push_back(text); }
  [[nodiscard]] std::int32_t getCount() const noexcept { return static_cast<std::int32_t>(texts_.size()); }

  /// The string at `index`, from 0; the empty string when there is none.
  const TAVString& operator[](std::int32_t index) const noexcept {
    return index < 0 || index >= getCount() ? TAVString::getEmptyString()
                                            : texts_[static_cast<std::size_t>(index)];
  }

  [[nodiscard]] auto begin() const noexcept { return texts_.begin(); }
  [[nodiscard]] auto end() const noexcept { return texts_.end(); }

 private:
  std::vector<TAVString> texts_;
};
