#include "framework/bridgelib/types.h"

#include <map>
#include <tuple>
#include <vector>

#include "framework/model/model.h"
#include "framework/types/type_names.h"

namespace {

using TypeKey = std::tuple<tav::ClassId, std::string_view, std::string_view, std::string_view, std::int32_t>;

TypeKey keyOf(const TAVType& type) {
  if (const auto* derived = tav::as<TAVDerivedType>(&type))
    return {type.classId(), type.getName(), derived->dataType, derived->nativeDataType, derived->length};
  const auto* base = tav::as<TAVBaseType>(&type);
  return {type.classId(), type.getName(), base ? base->dataType.view() : std::string_view(), {}, 0};
}

template <class T> std::vector<T*> listOf(const tav::BackReferences<T>& end) {
  std::vector<T*> list;
  for (T& object : end) list.push_back(&object);
  return list;
}

/// Lets everything that has `type` have `first` instead.
void replaceType(TAVType& type, TAVType& first) {
  for (TAVFeature* feature : listOf(type.features)) feature->addType(first);
  auto* concrete = tav::as<TAVConcreteType>(&type);
  auto* firstConcrete = tav::as<TAVConcreteType>(&first);
  if (!concrete || !firstConcrete) return;
  for (TAVDerivedType* derived : listOf(concrete->derivedTypes))
    if (derived != firstConcrete) derived->addDerivedFromConcreteType(*firstConcrete);
}

}  // namespace

TAVConcreteType* getType(const TAVModel& model, std::string_view name, tav::TypeKind kind) {
  const tav::ClassId id =
      kind == tav::TypeKind::base ? tav::classId<TAVBaseType> : tav::classId<TAVDerivedType>;
  return tav::as<TAVConcreteType>(model.types.get(name, id));
}

tav::Owned<TAVBaseType> createBaseType(const TAVString& name) {
  if (!tav::isTypeName(name)) return nullptr;
  auto type = tav::make<TAVBaseType>(name);
  type->dataType = name;
  return type;
}

TAVString buildTypePhysicalName(const TAVDerivedType& type) {
  if (type.length <= 0) return type.nativeDataType;
  return type.nativeDataType.str() + "(" + std::to_string(type.length) + ")";
}

void factorizeTypes(TAVModel& model, int /*reserved*/, int /*alsoReserved*/) {
  std::map<TypeKey, TAVType*> firsts;
  std::vector<TAVType*> repeated;
  for (TAVType& type : model.types)
    if (!firsts.emplace(keyOf(type), &type).second) repeated.push_back(&type);
  for (TAVType* type : repeated) {
    replaceType(*type, *firsts.at(keyOf(*type)));
    tav::destroy(*type);
  }
}

TAVConcreteType& tav::fetchBaseType(TAVModel& model, const TAVString& name) {
  const TAVString known = isTypeName(name) ? name : TAVString(kUndefinedType);
  if (TAVConcreteType* type = getType(model, known, TypeKind::base)) return *type;
  return model.addType(createBaseType(known));
}

TAVDerivedType& tav::fetchDerivedType(TAVModel& model, std::string_view typeName,
                                      std::string_view nativeDataType, std::int32_t length) {
  std::string name(typeName);
  if (length > 0) name.append("(").append(std::to_string(length)).append(")");
  if (auto* type = as<TAVDerivedType>(getType(model, name, TypeKind::derived))) return *type;
  auto made = make<TAVDerivedType>(name);
  made->dataType = typeName;
  made->nativeDataType = nativeDataType;
  made->length = length;
  made->setPhysicalName(buildTypePhysicalName(*made));
  made->addDerivedFromConcreteType(fetchBaseType(model, getDefaultLogicalName(typeName)));
  return model.addType(std::move(made));
}
