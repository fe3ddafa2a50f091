#include <gtest/gtest.h>

#include "framework/model/model.h"

// The operations as an author of a plug-in uses them. What is not placed yet is a tav::Owned; every operation
// that places it takes that and gives a reference to what now belongs to the model.

namespace {

TEST(Operations, PackagesAndClassifiersOfANamespaceAreCountedApart) {
  auto model = tav::make<TAVStoreModel>("Sales");
  auto& cubes = model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("Cubes"), '/');
  cubes.addNamespaceElement(tav::make<TAVCube>("First Cube"));
  auto& second = cubes.addNamespaceElement(tav::make<TAVDesignPackage>("First Package"));
  auto& third = cubes.addNamespaceElement(tav::make<TAVCube>("Second Cube"));
  auto& last = cubes.addNamespaceElement(tav::make<TAVOlapSchema>("Second Package"));

  EXPECT_EQ(cubes.getChildPackageCount(), 2);
  EXPECT_EQ(cubes.getChildPackage(0), &second);
  EXPECT_EQ(cubes.getChildPackage(1), &last);
  EXPECT_EQ(cubes.getChildPackage(2), nullptr);
  EXPECT_EQ(cubes.getChildPackage(-1), nullptr);
  EXPECT_EQ(cubes.getChildPackage("Second Package"), &last);
  EXPECT_EQ(cubes.getChildPackage("Second Cube"), nullptr);
  EXPECT_EQ(cubes.getModelElementCount(), 2);
  EXPECT_EQ(cubes.getModelElement(1), &third);
  EXPECT_EQ(cubes.getModelElement(2), nullptr);

  tav::destroy(second);
  auto& added = cubes.addNamespaceElement(tav::make<TAVDesignPackage>("Third Package"));
  EXPECT_EQ(cubes.getChildPackage(0), &last);
  EXPECT_EQ(cubes.getChildPackage(1), &added);
  EXPECT_EQ(cubes.getModelElement(1), &third);
}

TEST(Operations, AHierarchyIsBuiltFromEitherEnd) {
  auto dimension = tav::make<TAVDimension>("Date");
  auto& attribute = dimension->addFeature(tav::make<TAVDimensionAttribute>("Month"));
  auto& hierarchy = dimension->addHierarchy(tav::make<TAVHierarchy>("Calendar"));
  dimension->addDefaultHierarchy(hierarchy);

  TAVLevel& year = TAVLevel::addDimension(tav::make<TAVLevel>("Year"), *dimension);
  TAVLevel& month = TAVLevel::addDimension(tav::make<TAVLevel>("Month"), *dimension);
  auto& shown = month.addFeature(tav::make<TAVLevelAttribute>("Month"));
  shown.addDimensionAttribute(attribute);
  month.addDefaultLevelAttribute(shown);
  TAVLevelKey& key = TAVLevelKey::addLevel(tav::make<TAVLevelKey>("Key"), month);
  key.addLevelAttribute(shown);

  auto& top =
      TAVHierarchyLevelAssociation::addHierarchy(tav::make<TAVHierarchyLevelAssociation>(), hierarchy);
  auto& bottom =
      TAVHierarchyLevelAssociation::addHierarchy(tav::make<TAVHierarchyLevelAssociation>(), hierarchy);
  top.addLevel(year);
  bottom.addLevel(month);
  hierarchy.addTopHierarchyLevelAssociation(top);
  hierarchy.addBottomHierarchyLevelAssociation(bottom);

  // The way that a name is resolved along.
  const TAVHierarchyLevelAssociation& found =
      *dimension->hierarchies.get("Calendar")->hierarchyLevelAssociations[1];
  EXPECT_EQ(found.level->levelKeys.first()->levelAttributes.first()->dimensionAttribute.get(), &attribute);
  EXPECT_EQ(month.getParent(), dimension.get());
  EXPECT_EQ(key.getParent(), &month);
  EXPECT_EQ(top.getParent(), &hierarchy);

  // A level that is taken out belongs to who took it, its uses and its parts with it, until it is put back.
  tav::Owned<TAVLevel> taken = month.removeDimension();
  EXPECT_EQ(taken.get(), &month);
  EXPECT_EQ(dimension->levels.getCount(), 1);
  EXPECT_EQ(bottom.level.get(), &month);
  EXPECT_EQ(month.removeDimension(), nullptr) << "it is in no dimension";
  auto other = tav::make<TAVDimension>("Delivery Date");
  EXPECT_EQ(&TAVLevel::addDimension(std::move(taken), *other), &month);
  EXPECT_EQ(other->levels.first(), &month);
  other.reset();
  EXPECT_FALSE(bottom.level) << "it went with its new dimension";

  dimension->removeDefaultHierarchy();
  EXPECT_FALSE(dimension->defaultHierarchy);
}

TEST(Operations, AConnectionListsWhatIsReadThroughIt) {
  auto model = tav::make<TAVStoreModel>("Sales");
  auto& connection = model->addStoreConnection(tav::make<TAVStoreConnection>("Warehouse"));
  auto& views = model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("Views"), '/');
  auto& table = views.addNamespaceElement(tav::make<TAVTable>("Orders"));
  auto& synonym = table.addSynonym(tav::make<TAVSynonym>("Sales Orders"));
  tav::link<&TAVStoreConnection::connectionClassifiers>(connection, table);
  tav::link<&TAVStoreConnection::connectionElements>(connection, synonym);
  tav::link<&TAVStoreConnection::connectionNamespaces>(connection, views);
  tav::link<&TAVStoreConnection::connectionPackages>(connection, views);

  EXPECT_EQ(connection.connectionClassifiers.get("Orders"), &table);
  EXPECT_EQ(connection.connectionElements.get("Sales Orders"), &synonym);
  EXPECT_EQ(connection.connectionNamespaces[0], &views);
  EXPECT_EQ(connection.connectionPackages[0], &views);
  EXPECT_EQ(table.getRootModel(), model.get()) << "being listed moves nothing";

  tav::destroy(views);
  EXPECT_TRUE(connection.connectionClassifiers.empty());
  EXPECT_TRUE(connection.connectionElements.empty());
  EXPECT_TRUE(connection.connectionNamespaces.empty());
  EXPECT_TRUE(connection.connectionPackages.empty());
}

}  // namespace
