#include "reader/origin.h"

#include "bridge/catalogue/build_version.h"
#include "framework/bridgelib/model_stamps.h"
#include "framework/modelbridge/bridge_constants.h"

namespace tav {

Owned<TAVMetadataOrigin> describeOrigin(const TAVString& bridgeIdentifier, const TAVFile& inputFile) {
  const TAVBridgeSpecificationLiteral& tool = BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT;
  Owned<TAVMetadataOrigin> origin = generateMetadataOrigin({tool.getTool_Name(), tool.getVendor_Name()},
                                                           bridgeIdentifier, getBuildVersion());
  origin->format = "XML";
  origin->encoding = "UTF-8";
  origin->path = inputFile.getPath();
  return origin;
}

}  // namespace tav
