#pragma once

#include "framework/model/classes/element.h"
#include "framework/model/link.h"

/// Where a model comes from: the file, and the tool that wrote and the bridge that read it.
class TAV_API TAVMetadataOrigin : public TAVElement {
 public:
  TAVMetadataOrigin() : TAVElement(tav::classId<TAVMetadataOrigin>) {}
  TAVString format;
  TAVString encoding;
  TAVString path;  ///< as the caller gave it
  std::int32_t code = 0;
  TAVString toolName;
  TAVString vendorName;
  TAVString version;
  tav::Container<TAVModel> model;
};

template <> struct tav::Meta<TAVMetadataOrigin> {
  static constexpr std::array attributes{attribute<&TAVMetadataOrigin::format>("format"),
                                         attribute<&TAVMetadataOrigin::encoding>("encoding"),
                                         attribute<&TAVMetadataOrigin::path>("path"),
                                         attribute<&TAVMetadataOrigin::code>("code"),
                                         attribute<&TAVMetadataOrigin::toolName>("toolName"),
                                         attribute<&TAVMetadataOrigin::vendorName>("vendorName"),
                                         attribute<&TAVMetadataOrigin::version>("version")};
  static constexpr std::array links{link<&TAVMetadataOrigin::model>("model", "metadataOrigins")};
};
