#include <gtest/gtest.h>

#include "expressions/model_names.h"
#include "expressions/script_parser.h"
#include "reader/reader.h"
#include "tests/support/checked_import.h"
#include "tests/support/lineage_text.h"

// What imports cannot show of the two analyzers of cubes.

namespace {

TAVDimension& addDimension(TAVDesignPackage& package, const char* name, const char* id,
                           std::initializer_list<const char*> measures) {
  auto dimension = tav::make<TAVDimension>(name);
  dimension->nativeId = id;
  dimension->nativeType = "MeasureGroup";
  for (const char* measure : measures) dimension->addFeature(tav::make<TAVMeasure>(measure));
  return package.addNamespaceElement(std::move(dimension));
}

TAVDesignPackage& addPackage(TAVDesignPackage& parent, const char* name, const char* id) {
  auto package = tav::make<TAVDesignPackage>(name);
  package->nativeId = id;
  return parent.addNamespaceElement(std::move(package));
}

class CubeAnalyzers : public testing::Test {
 protected:
  std::string sources() const {
    std::string text;
    for (const TAVFeature& source : map_.sourceFeatures) text += source.getPath(true).str() + "\n";
    return text;
  }

  tav::Owned<TAVStoreModel> model_ = tav::make<TAVStoreModel>();
  TAVDesignPackage& cubes_ = model_->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("Cubes"), '/');
  TAVDesignPackage& cube_ = addPackage(cubes_, "Cube", "c");
  TAVDimension& target_ = addDimension(cube_, "Target", "t", {"target"});
  TAVFeatureMap& map_ =
      target_.addClassifierMap(tav::make<TAVClassifierMap>()).addFeatureMap(tav::make<TAVFeatureMap>());
};

TEST_F(CubeAnalyzers, NamesOfAnIdAndAFeatureMeanEveryDimensionOfThatIdInAPackageOfThatId) {
  addDimension(cube_, "One", "c", {"Sales"});
  addDimension(cube_, "Two", "c", {"Sales", "Cost"});
  addDimension(cube_, "Other", "x", {"Sales"});
  addDimension(addPackage(cubes_, "Again", "c"), "Three", "c", {"Cost"});
  addDimension(addPackage(cubes_, "Case", "C"), "Four", "C", {"Cost"});
  map_.operation = "[c].[Sales] + \"c\".Cost - c.Gone * Sales / [c].[Sales].[x] + x.Sales + [c].[sales]";

  TAVSQLServerXMLAImportBridge::XMLAExpressionAnalyzer analyzer(nullptr);
  analyzer.parse(&map_);
  EXPECT_EQ(sources(), "");
  analyzer.setCubesFolder(cubes_);
  analyzer.parse(&map_);
  EXPECT_EQ(sources(),
            "/Cubes/Cube/One/Sales\n/Cubes/Cube/Two/Sales\n/Cubes/Cube/Two/Cost\n/Cubes/Again/Three/Cost\n");
  EXPECT_EQ(analyzer.getDstFeature(&target_, "target", 0), nullptr);
  EXPECT_TRUE(analyzer.isStarCandidate(nullptr, false));
  EXPECT_FALSE(analyzer.isClassifierDefined(&target_));
}

TEST(CubeParser, DestinationsAreTheOneFeatureThatANameMeans) {
  const auto imported = tav::test::importFile(tav::test::testFile("../examples/murmeltal-huts.asdatabase"));
  auto& stays = static_cast<TAVDesignPackage&>(*tav::test::cubePackages(*imported.model).front());
  tav::ModelNames names(*imported.model);
  cScriptParser parser(nullptr, stays, names);
  const auto find = [&](const char* name) {
    const TAVFeature* feature = parser.getDstFeature(nullptr, name, 0);
    return feature ? feature->getPath(true).str() : "";
  };
  EXPECT_EQ(find("[hut].[Beds]"), "/Dimensions/Hut/Beds");
  EXPECT_EQ(find("Nights"), "/Cubes/Stays/Measure Groups/Stays/Nights");
  EXPECT_EQ(find("Gone"), "");
  EXPECT_EQ(find("[Date].[Calendar].CurrentMember"), "");
}

}  // namespace
