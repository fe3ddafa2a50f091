#include "framework/modelbridge/bridge_constants.h"

#include "framework/std/exception.h"

const TAVCommonMessage UNSUPPORTED_BRIDGE_OPERATION("TAVBRIDGE_F0001",
                                                    "The bridge '{0}' does not support the operation '{1}'.",
                                                    "FATAL");

const TAVBridgeSpecificationLiteral BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT(
    "MicrosoftSqlServerXMLAImport", {.toolWeb = "",
                                     .vendorName = "Microsoft",
                                     .toolName = "SQL Server Analysis Services",
                                     .toolVersions = "2005 to 2008",
                                     .methodologySummary = "Multidimensional",
                                     .descriptionLiteralId = "MicrosoftSqlServerXMLAImportDescription"});

TAVCommonMessage::~TAVCommonMessage() = default;

void TAVCommonMessage::throwException(const TAVString& first, const TAVString& second) const {
  TAVStringArray arguments;
  arguments.add(first);
  arguments.add(second);
  tav::fail(getMessageIdentifier(), createParameterizedText(arguments));
}

const TAVBridgeSpecificationLiteral* getBridgeSpecification(const TAVString& bridgeIdentifier) {
  const TAVBridgeSpecificationLiteral& known = BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT;
  return bridgeIdentifier == known.getBridgeIdentifier() ? &known : nullptr;
}
