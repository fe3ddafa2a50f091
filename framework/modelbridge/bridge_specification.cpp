#include "framework/modelbridge/bridge_specification.h"

TAVBridgeSpecificationLiteral::TAVBridgeSpecificationLiteral(TAVString bridgeIdentifier, Texts texts)
    : bridgeIdentifier_(std::move(bridgeIdentifier)), texts_(std::move(texts)) {}

void TAVBridgeSpecification::initialize(const TAVString& toolWeb, const TAVString& vendorName,
                                        const TAVString& toolName, const TAVString& toolVersions,
                                        const TAVString& methodologySummary, const TAVString& buildVersion,
                                        const TAVString& description, bool deprecated) {
  toolWeb_ = toolWeb;
  vendorName_ = vendorName;
  toolName_ = toolName;
  toolVersions_ = toolVersions;
  methodologySummary_ = methodologySummary;
  buildVersion_ = buildVersion;
  description_ = description;
  deprecated_ = deprecated;
}
