#include "reader/elements/setting_writer.h"

namespace tav {

std::size_t SettingWriter::begin() {
  const std::size_t before = begin_;
  begin_ = path_.size();
  return before;
}

void SettingWriter::set(ItemId item, std::string_view name, std::string_view value) {
  const std::size_t size = path_.size();
  if (!isFolding_) {
    path_ += name;
    details_.set(item, std::string_view(path_).substr(begin_), value);
    path_.resize(size);
    return;
  }
  if (!fold_.empty()) fold_ += fold_.size() == labelSize_ ? ": " : ", ";
  fold_ += name;
  if (!name.empty() && !value.empty()) fold_ += ' ';
  fold_ += value;
}

void SettingWriter::beginFold(std::string_view name, std::string_view label) {
  path_ += name;
  isFolding_ = true;
  foldStart_ = path_.size();
  fold_ = label;
  labelSize_ = label.size();
}

void SettingWriter::endFold(ItemId item, bool withLabel) {
  isFolding_ = false;
  path_.resize(foldStart_);
  if (fold_.size() > labelSize_ || withLabel)
    details_.set(item, std::string_view(path_).substr(begin_), fold_);
}

}  // namespace tav
