#pragma once

// What a bridge asks of its user before it runs.

#include <deque>
#include <vector>

#include "framework/std/string.h"

/// What kind of value an option takes.
enum class OptionType : std::int32_t {
  text = 1,
  number = 2,
  boolean = 3,
  enumeration = 4,
  file = 5,
  directory = 6
};

/// What a bridge does with the file that an option names.
enum class OpenMode : std::int32_t { read = 0, write = 1 };

/// One option of a bridge with the value that the user gave it.
class TAV_API TAVOption {
 public:
  /// The option's value is its default value at first. The key is what the option is found by; the name is
  /// what a user sees.
  TAVOption(TAVString key, TAVString name, TAVString description, OptionType type, TAVString defaultValue);

  [[nodiscard]] const TAVString& getKey() const noexcept { return key_; }
  [[nodiscard]] const TAVString& getName() const noexcept { return name_; }
  [[nodiscard]] const TAVString& getDescription() const noexcept { return description_; }
  [[nodiscard]] OptionType getType() const noexcept { return type_; }
  [[nodiscard]] const TAVString& getDefaultValue() const noexcept { return defaultValue_; }

  [[nodiscard]] const TAVString& getValue() const noexcept { return value_; }
  void setValue(const TAVString& value) { value_ = value; }

  /// Whether a bridge cannot run without a value.
  [[nodiscard]] bool isMandatory() const noexcept { return mandatory_; }
  void setMandatory(bool mandatory) noexcept { mandatory_ = mandatory; }

  /// The extensions, without a dot, that files of the option usually have; none when any will do.
  [[nodiscard]] const std::vector<TAVString>& getExtensions() const noexcept { return extensions_; }
  void addExtension(const TAVString& extension) { extensions_.push_back(extension); }

  [[nodiscard]] OpenMode getOpenMode() const noexcept { return openMode_; }
  void setOpenMode(OpenMode mode) noexcept { openMode_ = mode; }

 private:
  TAVString key_;
  TAVString name_;
  TAVString description_;
  OptionType type_;
  TAVString defaultValue_;
  TAVString value_;
  std::vector<TAVString> extensions_;
  OpenMode openMode_ = OpenMode::read;
  bool mandatory_ = false;
};

/// Options in the order in which they were added, owned by value. Adding moves none of them.
class TAV_API TAVOptionVector {
 public:
  TAVOptionVector() = default;

  TAVOption& add(TAVOption option) { return options_.emplace_back(std::move(option)); }
  void removeAll() { options_.clear(); }
  [[nodiscard]] std::int32_t getCount() const noexcept { return static_cast<std::int32_t>(options_.size()); }

  [[nodiscard]] auto begin() noexcept { return options_.begin(); }
  [[nodiscard]] auto end() noexcept { return options_.end(); }
  [[nodiscard]] auto begin() const noexcept { return options_.begin(); }
  [[nodiscard]] auto end() const noexcept { return options_.end(); }

 private:
  std::deque<TAVOption> options_;
};

/// The options of one bridge, found by their keys.
class TAV_API TAVOptionList : public TAVOptionVector {
 public:
  /// The first option with this key, exactly, or null. It walks: a bridge has a handful of options.
  [[nodiscard]] TAVOption* get(std::string_view key) noexcept;
  [[nodiscard]] const TAVOption* get(std::string_view key) const noexcept;
};
