#pragma once

// The literals that a bridge's options are made of.

#include <vector>

#include "framework/std/literal.h"
#include "framework/std/option.h"

/// The values that an option of type enumeration can take.
class TAV_API TAVBridgeOptionEnumerationLiteral : public TAVTextLiteral {
 public:
  using TAVTextLiteral::TAVTextLiteral;
  TAVBridgeOptionEnumerationLiteral(const TAVBridgeOptionEnumerationLiteral&) = default;
  TAVBridgeOptionEnumerationLiteral& operator=(const TAVBridgeOptionEnumerationLiteral&) = default;
  ~TAVBridgeOptionEnumerationLiteral() override;

  /// Adds a value; the literal is not owned.
  void addValue(const TAVTextLiteral& value) { values_.push_back(&value); }
  [[nodiscard]] const std::vector<const TAVTextLiteral*>& getValues() const noexcept { return values_; }

 private:
  std::vector<const TAVTextLiteral*> values_;
};

/// The declaration of an option; its text is the option's description.
class TAV_API TAVBridgeOptionLiteral : public TAVTextLiteral {
 public:
  /// `enumeration` gives the values of an option of type enumeration, else it is null; `defaultValue` gives
  /// the default value, null for none. Both must outlive the literal; their texts are read by
  /// generateOption(), never here.
  TAVBridgeOptionLiteral(const TAVString& key, const TAVString& name, OptionType type,
                         const TAVString& description, const TAVBridgeOptionEnumerationLiteral* enumeration,
                         const TAVTextLiteral* defaultValue);
  TAVBridgeOptionLiteral(const TAVBridgeOptionLiteral&) = default;
  TAVBridgeOptionLiteral& operator=(const TAVBridgeOptionLiteral&) = default;
  ~TAVBridgeOptionLiteral() override;

  /// Replaces the description.
  void update(const TAVString& text) override;

  [[nodiscard]] const TAVString& getName() const noexcept { return name_; }
  [[nodiscard]] OptionType getType() const noexcept { return type_; }
  [[nodiscard]] const TAVBridgeOptionEnumerationLiteral* getEnumeration() const noexcept {
    return enumeration_;
  }

  /// A new option under the literal's key, at its default value. `extensions` ends with a null entry; null
  /// stands for none. The flag has no meaning.
  [[nodiscard]] TAVOption generateOption(bool mandatory, const char* const* extensions = nullptr,
                                         OpenMode openMode = OpenMode::read, bool flag = false);

 protected:
  /// Called before an option is generated, for a catalogue that makes its texts on first use.
  virtual void initParameter();

 private:
  TAVString name_;
  OptionType type_;
  const TAVBridgeOptionEnumerationLiteral* enumeration_;
  const TAVTextLiteral* defaultValue_;
};
