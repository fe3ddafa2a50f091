#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <sstream>

#include "framework/bridgelib/model_stamps.h"
#include "framework/bridgelib/names.h"
#include "framework/bridgelib/properties.h"
#include "framework/bridgelib/types.h"
#include "framework/model/model.h"
#include "framework/std/exception.h"
#include "tests/support/corpus.h"

namespace {

TAVDerivedType& addType(TAVStoreModel& model, const TAVString& name, const TAVString& native, int length,
                        TAVConcreteType& base) {
  auto type = tav::make<TAVDerivedType>(name);
  type->dataType = name;
  type->nativeDataType = native;
  type->length = length;
  type->addDerivedFromConcreteType(base);
  return model.addType(std::move(type));
}

std::string listTypes(const TAVStoreModel& model) {
  std::ostringstream text;
  for (const TAVType& type : model.types) {
    text << type.getName().view() << ":";
    for (const TAVFeature& feature : type.features) text << " " << feature.getName().view();
    if (const auto* derived = tav::as<TAVDerivedType>(&type))
      text << " from " << derived->derivedFromConcreteType->getName().view();
    text << "\n";
  }
  return text.str();
}

TEST(Types, OneObjectOfEachIsLeftAndEverythingPointsAtIt) {
  const auto model = tav::make<TAVStoreModel>("m");
  auto& table = tav::add<&TAVNamespace::namespaceElements>(
      model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("p"), '/'), tav::make<TAVTable>("t"));
  const auto addColumn = [&](const char* name, TAVType& type) {
    table.addFeature(tav::make<TAVColumn>(name)).addType(type);
  };
  for (int i = 0; i < 3; ++i) {
    TAVBaseType& base = model->addType(createBaseType("VARCHAR"));
    addColumn("plain", addType(*model, "VARCHAR", "WChar", 0, base));
    addColumn("other native", addType(*model, "VARCHAR", "xs:string", 0, base));
    addColumn("other length", addType(*model, "VARCHAR", "WChar", 7, base));
    addColumn("base", base);
  }
  factorizeTypes(*model, 0, 0);
  EXPECT_EQ(listTypes(*model),
            "VARCHAR: base base base\n"
            "VARCHAR: plain plain plain from VARCHAR\n"
            "VARCHAR: other native other native other native from VARCHAR\n"
            "VARCHAR: other length other length other length from VARCHAR\n");
  EXPECT_EQ(tav::as<TAVBaseType>(model->types[0])->derivedTypes.getCount(), 3);
}

TEST(Types, ABaseTypeOfAnUnknownNameIsTheOneThatIsUndefined) {
  const auto model = tav::make<TAVStoreModel>("m");
  EXPECT_EQ(createBaseType("varchar"), nullptr);
  TAVConcreteType& type = tav::fetchBaseType(*model, "nothing");
  EXPECT_EQ(type.getName(), "undefined");
  EXPECT_EQ(&tav::fetchBaseType(*model, "undefined"), &type);
  EXPECT_EQ(getType(*model, "undefined", tav::TypeKind::derived), nullptr);
  EXPECT_EQ(getType(*model, "undefined", tav::TypeKind::base), &type);
}

TEST(Types, TheFirstNativeTextOfANameStays) {
  const auto model = tav::make<TAVStoreModel>("m");
  TAVDerivedType& type = tav::fetchDerivedType(*model, "INTEGER", "UnsignedInt");
  EXPECT_EQ(&tav::fetchDerivedType(*model, "INTEGER", "xs:int"), &type);
  EXPECT_EQ(getPhysicalName(type), "UnsignedInt");
}

TEST(Properties, AValueIsReplacedAndElementTypesHaveTheirOwn) {
  const auto model = tav::make<TAVStoreModel>("m");
  const auto fetch = [&](TAVElementType elementType, const char* group, bool create) {
    return fetchPropertyType(*model, elementType, "Format", TAVDesignLevelType(), group, "", "SQL_VARCHAR",
                             create);
  };
  EXPECT_EQ(fetch(97, "User", false), nullptr);
  TAVPropertyType* measures = fetch(97, "User", true);
  TAVPropertyType* cubes = fetch(85, "User", true);
  TAVPropertyType* others = fetch(97, "Other", true);
  EXPECT_EQ(fetch(85, "User", true), cubes);
  EXPECT_EQ(fetch(97, "User", true), measures);
  EXPECT_EQ(model->propertyTypes.getCount(), 3);

  const auto measure = tav::make<TAVMeasure>("x");
  setPropertyValue(*measures, "#", *measure);
  setPropertyValue(*others, "%", *measure);
  setPropertyValue(*measures, "0.0", *measure);
  EXPECT_EQ(getPropertyValue(*measures, *measure), "0.0");
  EXPECT_EQ(getPropertyValue(*others, *measure), "%");
  EXPECT_EQ(getPropertyValue(*cubes, *measure), "");
  EXPECT_EQ(measure->propertyValues.getCount(), 2);
}

TEST(RemoveQuotes, Corpus) {
  tav::test::checkCorpus("bridgelib/remove_quotes.txt", [](const std::string& input) {
    std::istringstream lines(input);
    std::string result;
    int count = 0;
    for (std::string line; std::getline(lines, line);)
      (result += count++ == 0 ? "" : "\n") += removeQuotes(line).view();
    return result;
  });
}

std::string stamp(const std::string& epoch) {
  const auto model = tav::make<TAVStoreModel>("m");
  setenv("SOURCE_DATE_EPOCH", epoch.c_str(), 1);
  try {
    setModelModificationTime(*model, TAVOptionList());
  } catch (const TAVException& failure) {
    unsetenv("SOURCE_DATE_EPOCH");
    return failure.getMessage().str();
  }
  unsetenv("SOURCE_DATE_EPOCH");
  return model->modificationTime.str();
}

TEST(ModificationTime, Corpus) {
  tav::test::checkCorpus("bridgelib/modification_time.txt", stamp);
}

TEST(ModificationTime, WithoutAnEpochItIsNow) {
  const std::string before = stamp(std::to_string(std::time(nullptr)));
  const std::string now = stamp("");
  EXPECT_LE(before, now);
  EXPECT_LE(now, stamp(std::to_string(std::time(nullptr))));
}

}  // namespace
