#include "framework/types/data_store_version.h"

#include <array>
#include <cassert>
#include <tuple>

namespace {

constexpr std::array<tav::TypeNameRow, 16> kDefinitionNames{{{"BigInt", "BIGINT"},
                                                             {"Binary", "BINARY"},
                                                             {"Boolean", "BOOLEAN"},
                                                             {"Char", "CHAR"},
                                                             {"Currency", "DECIMAL"},
                                                             {"Date", "TIMESTAMP"},
                                                             {"Double", "DOUBLE"},
                                                             {"Integer", "INTEGER"},
                                                             {"Single", "REAL"},
                                                             {"SmallInt", "SMALLINT"},
                                                             {"TinyInt", "TINYINT"},
                                                             {"UnsignedBigInt", "BIGINT"},
                                                             {"UnsignedInt", "INTEGER"},
                                                             {"UnsignedSmallInt", "SMALLINT"},
                                                             {"UnsignedTinyInt", "TINYINT"},
                                                             {"WChar", "VARCHAR"}}};
static_assert(tav::isInOrder(kDefinitionNames));

}  // namespace

TAVDataStoreVersion::TAVDataStoreVersion(TAVString dataStore, int major, int minor, int release)
    : dataStore_{std::move(dataStore), major, minor, release} {}

TAVDataStoreVersion::~TAVDataStoreVersion() = default;

bool TAVDataStoreVersion::isSupportedByToolVersion(int major, int minor, int release) const {
  return std::tuple(major, minor, release) >= std::tuple(getMajor(), getMinor(), getRelease());
}

std::span<const tav::TypeNameRow> TAVDataStoreVersion::getTypeNames() const {
  if (dataStore_.name == TAVDataTypeConstants::DATASTORE_MICROSOFT_DSV) return kDefinitionNames;
  return {};
}

void setDataStore(TAVSystemPackage* systemPackage, const TAVDataStoreVersion* dataStoreVersion) {
  assert(systemPackage && dataStoreVersion);
  systemPackage->dataStore = dataStoreVersion->asAttribute();
}
