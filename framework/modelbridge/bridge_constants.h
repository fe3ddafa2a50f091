#pragma once

// What the framework knows of every bridge, and the messages that all bridges share.

#include "framework/modelbridge/bridge_specification.h"
#include "framework/std/literal.h"

/// A message of the framework with two arguments.
class TAV_API TAVCommonMessage : public TAVMessageLiteral {
 public:
  using TAVMessageLiteral::TAVMessageLiteral;
  TAVCommonMessage(const TAVCommonMessage&) = default;
  TAVCommonMessage& operator=(const TAVCommonMessage&) = default;
  ~TAVCommonMessage() override;

  /// Throws a TAVException with the message "[identifier] text".
  [[noreturn]] void throwException(const TAVString& first, const TAVString& second) const;
};

/// Thrown, with the bridge and the operation, where a bridge does not offer an operation.
extern TAV_API const TAVCommonMessage UNSUPPORTED_BRIDGE_OPERATION;

/// The import of Analysis Services databases.
extern TAV_API const TAVBridgeSpecificationLiteral BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT;

/// The specification of the bridge with this identifier, or null.
TAV_API const TAVBridgeSpecificationLiteral* getBridgeSpecification(const TAVString& bridgeIdentifier);
