#include "framework/modelbridge/bridge_option_literal.h"

TAVBridgeOptionEnumerationLiteral::~TAVBridgeOptionEnumerationLiteral() = default;
TAVBridgeOptionLiteral::~TAVBridgeOptionLiteral() = default;

TAVBridgeOptionLiteral::TAVBridgeOptionLiteral(const TAVString& key, const TAVString& name, OptionType type,
                                               const TAVString& description,
                                               const TAVBridgeOptionEnumerationLiteral* enumeration,
                                               const TAVTextLiteral* defaultValue)
    : TAVTextLiteral(key, description),
      name_(name),
      type_(type),
      enumeration_(enumeration),
      defaultValue_(defaultValue) {}

void TAVBridgeOptionLiteral::update(const TAVString& text) {
  TAVTextLiteral::update(text);
}

void TAVBridgeOptionLiteral::initParameter() {}

TAVOption TAVBridgeOptionLiteral::generateOption(bool mandatory, const char* const* extensions,
                                                 OpenMode openMode, bool /*flag*/) {
  initParameter();
  TAVOption option(getKey(), name_, getText(), type_, defaultValue_ ? defaultValue_->getText() : TAVString());
  option.setMandatory(mandatory);
  option.setOpenMode(openMode);
  for (; extensions && *extensions; ++extensions) option.addExtension(*extensions);
  return option;
}
