#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "framework/model/model.h"
#include "framework/model/reflection.h"
#include "framework/model/traversal.h"

namespace {

/// The collection as the simplest code would keep it.
struct Plain {
  std::vector<std::pair<std::string, TAVFeature*>> features;

  [[nodiscard]] TAVFeature* get(const std::string& name) const {
    for (const auto& [own, feature] : features)
      if (own == name) return feature;
    return nullptr;
  }
  [[nodiscard]] std::string uniqueName(const std::string& name) const {
    if (!get(name)) return name;
    int number = 2;
    while (get(name + "/" + std::to_string(number))) ++number;
    return name + "/" + std::to_string(number);
  }
};

// Names that repeat, that end in numbers as unique names do, and that only look so.
constexpr std::array kNames{"a", "a/2", "a/3", "a/02", "a/1", "b", "", "/2", "a/2/2", "c/4294967295"};

class RandomSteps {
 public:
  explicit RandomSteps(unsigned seed) : random_(seed) {}

  void step() {
    switch (random_() % 9) {
      case 0:
      case 1:
        return add(false);
      case 2:
      case 3:
        return add(true);
      case 4:
        return remove();
      case 5:
        return rename();
      case 6:
        return look();
      case 7:
        return compareMeasures();
      default:
        return compareOne();
    }
  }

  void compareAll() const {
    std::size_t i = 0;
    for (const TAVFeature& feature : table_->features) {
      ASSERT_LT(i, plain_.features.size());
      ASSERT_EQ(&feature, plain_.features[i++].second);
    }
    ASSERT_EQ(i, plain_.features.size());
  }

 private:
  std::string anyName() { return kNames[random_() % kNames.size()]; }
  std::size_t anyPlace() { return random_() % plain_.features.size(); }

  void add(bool unique) {
    // Growing and shrinking phases, so that holes, indexes and small collections all occur.
    if (plain_.features.size() > (random_() % 512)) return remove();
    const std::string name = anyName();
    tav::Owned<TAVStructuralFeature> made;
    if (random_() % 3 == 0)
      made = tav::make<TAVMeasure>(name);
    else
      made = tav::make<TAVColumn>(name);
    TAVStructuralFeature& feature =
        unique ? table_->addFeatureUniqueName(std::move(made), '/') : table_->addFeature(std::move(made));
    ASSERT_EQ(feature.getName(), unique ? plain_.uniqueName(name) : name);
    plain_.features.emplace_back(feature.getName().str(), &feature);
  }
  void remove() {
    if (plain_.features.empty()) return;
    const std::size_t place = anyPlace();
    tav::destroy(*plain_.features[place].second);
    plain_.features.erase(plain_.features.begin() + static_cast<std::ptrdiff_t>(place));
  }
  void rename() {
    if (plain_.features.empty()) return;
    auto& [name, feature] = plain_.features[anyPlace()];
    name = anyName();
    feature->setName(name);
  }
  void look() {
    const std::string name = anyName();
    ASSERT_EQ(table_->features.get(name), plain_.get(name)) << name;
  }
  void compareOne() {
    ASSERT_EQ(table_->features.getCount(), static_cast<std::int32_t>(plain_.features.size()));
    if (plain_.features.empty()) return;
    const std::size_t place = anyPlace();
    ASSERT_EQ(table_->features[static_cast<std::int32_t>(place)], plain_.features[place].second);
    ASSERT_TRUE(table_->features.contains(*plain_.features[place].second));
  }
  /// The same among the measures alone.
  void compareMeasures() {
    std::vector<TAVFeature*> measures;
    for (const auto& [name, feature] : plain_.features)
      if (tav::is<TAVMeasure>(*feature)) measures.push_back(feature);
    const tav::ClassId kind = tav::classId<TAVMeasure>;
    ASSERT_EQ(table_->features.getCount(kind), static_cast<std::int32_t>(measures.size()));
    ASSERT_EQ(table_->features.at(static_cast<std::int32_t>(measures.size()), kind), nullptr);
    if (measures.empty()) return;
    const std::size_t place = random_() % measures.size();
    ASSERT_EQ(table_->features.at(static_cast<std::int32_t>(place), kind), measures[place]);
    const std::string name = measures[place]->getName().str();
    const auto first = std::find_if(measures.begin(), measures.end(),
                                    [&](TAVFeature* measure) { return measure->getName() == name; });
    const TAVObjectCollection& features = table_->features;
    ASSERT_EQ(features.get(name, kind), *first);
  }

  std::mt19937 random_;
  tav::Owned<TAVTable> table_ = tav::make<TAVTable>("t");
  Plain plain_;
};

TEST(Collection, BehavesLikeAPlainListUnderRandomSteps) {
  for (unsigned seed = 1; seed <= 4; ++seed) {
    RandomSteps steps(seed);
    for (int i = 0; i < 50000; ++i) {
      steps.step();
      if (i % 1000 == 0) steps.compareAll();
      if (HasFatalFailure()) FAIL() << "seed " << seed << ", step " << i;
    }
  }
}

TEST(Collection, ManyToManyLinksAnswerLikeAMatrixUnderRandomSteps) {
  constexpr std::size_t kSize = 24;
  std::mt19937 random(7);
  auto owner = tav::make<TAVTable>();
  auto holder = tav::make<TAVTable>();
  TAVClassifierMap& maps = holder->addClassifierMap(tav::make<TAVClassifierMap>());
  std::vector<TAVFeature*> features;
  std::vector<TAVFeatureMap*> uses;
  for (std::size_t i = 0; i < kSize; ++i) {
    features.push_back(&owner->addFeature(tav::make<TAVColumn>("c")));
    uses.push_back(&maps.addFeatureMap(tav::make<TAVFeatureMap>()));
  }
  std::array<std::array<bool, kSize>, kSize> linked{};
  for (int step = 0; step < 50000; ++step) {
    const std::size_t m = random() % kSize;
    const std::size_t f = random() % kSize;
    ASSERT_EQ(uses[m]->sourceFeatures.contains(*features[f]), linked[m][f]) << "step " << step;
    if (linked[m][f])
      tav::unlink<&TAVFeatureMap::sourceFeatures>(*uses[m], *features[f]);
    else
      uses[m]->addSourceFeature(*features[f]);
    linked[m][f] = !linked[m][f];
  }
  const auto count = [&](std::size_t f) {
    return std::count_if(linked.begin(), linked.end(), [&](const auto& row) { return row[f]; });
  };
  for (std::size_t f = 0; f < kSize; ++f) ASSERT_EQ(features[f]->sourceOf.getCount(), count(f));
  owner.reset();
  for (const TAVFeatureMap* use : uses) EXPECT_TRUE(use->sourceFeatures.empty());
}

TEST(Links, ASingleEndLetsGoOfWhatItPointedTo) {
  auto dimension = tav::make<TAVDimension>("d");
  TAVHierarchy& first = dimension->addHierarchy(tav::make<TAVHierarchy>("first"));
  TAVHierarchy& second = dimension->addHierarchy(tav::make<TAVHierarchy>("second"));
  dimension->addDefaultHierarchy(first);
  dimension->addDefaultHierarchy(second);
  EXPECT_EQ(dimension->defaultHierarchy.get(), &second);
  EXPECT_FALSE(first.defaultOf);
  tav::destroy(second);
  EXPECT_FALSE(dimension->defaultHierarchy);
  EXPECT_EQ(dimension->hierarchies.getCount(), 1);
}

TEST(Links, TakingOutAndAddingAgainMovesToTheEnd) {
  auto dimension = tav::make<TAVDimension>("d");
  for (const char* name : {"Year", "Month", "Day"})
    tav::add<&TAVDimension::levels>(*dimension, tav::make<TAVLevel>(name));
  TAVLevel& year = *dimension->levels.get("Year");
  TAVLevelAttribute& attribute = year.addFeature(tav::make<TAVLevelAttribute>("Year"));
  year.addDefaultLevelAttribute(attribute);
  tav::add<&TAVDimension::levels>(*dimension, tav::take(year));
  EXPECT_EQ(dimension->levels[2], &year);
  EXPECT_EQ(dimension->levels[0]->getName(), "Month");
  EXPECT_EQ(year.defaultLevelAttribute.get(), &attribute);
}

/// Sales with a table that feeds a dimension whose level shows its attribute.
tav::Owned<TAVStoreModel> makeModel() {
  auto model = tav::make<TAVStoreModel>("Sales");
  auto& folder = model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("Dimensions"), '/');
  auto& table = folder.addNamespaceElement(tav::make<TAVTable>("Products"));
  auto& column = table.addFeature(tav::make<TAVColumn>("Name"));
  auto& dimension = folder.addNamespaceElement(tav::make<TAVDimension>("Product"));
  auto& attribute = dimension.addFeature(tav::make<TAVDimensionAttribute>("Product Name"));
  auto& map = dimension.addClassifierMap(tav::make<TAVClassifierMap>());
  map.addDestinationClassifier(dimension);
  map.addSourceClassifier(table);
  auto& featureMap = map.addFeatureMap(tav::make<TAVFeatureMap>());
  featureMap.addDestinationFeature(attribute);
  featureMap.addSourceFeature(column);
  return model;
}

TEST(Model, DeletingATableLeavesNoTraceOfIt) {
  const auto model = makeModel();
  auto& folder = *model->designPackages.first();
  auto& dimension = static_cast<TAVDimension&>(*folder.namespaceElements.get("Product"));
  tav::destroy(*folder.namespaceElements.get("Products"));
  const TAVClassifierMap& map = *dimension.getDestinationOfClassifierMap();
  EXPECT_TRUE(map.sourceClassifiers.empty());
  EXPECT_TRUE(map.featureMaps.first()->sourceFeatures.empty());
  EXPECT_EQ(folder.namespaceElements.getCount(), 1);
}

TEST(Model, PathsNameEveryStepBelowTheModel) {
  const auto model = makeModel();
  TAVObjectCollector attributes(95);
  model->depthTraversal(attributes);
  ASSERT_EQ(attributes.getObjects().size(), 1U);
  TAVObject& attribute = *attributes.getObjects().front();
  EXPECT_EQ(attribute.getPath(true), "/Dimensions/Product/Product Name");
  EXPECT_EQ(attribute.getRootModel(), model.get());
  EXPECT_EQ(model->getPath(true), "/");
}

TEST(Model, KindsAreAskedByElementType) {
  const auto model = makeModel();
  const auto count = [&](TAVElementType code) {
    TAVObjectCollector collector(code);
    model->depthTraversal(collector);
    return collector.getObjects().size();
  };
  EXPECT_EQ(count(75), 2U);  // classifiers: table and dimension
  EXPECT_EQ(count(77), 2U);  // features
  EXPECT_EQ(count(20), 3U);  // namespace elements: the folder too, the store model not
  EXPECT_EQ(count(999), 0U);
  EXPECT_FALSE(model->isInstanceOf(20));
  EXPECT_TRUE(model->designPackages.first()->isInstanceOf(9));
  EXPECT_FALSE(model->designPackages.first()->isInstanceOf(140));
}

TEST(Model, ACopyRefersToCopiesInsideAndToOriginalsOutside) {
  const auto model = makeModel();
  auto& folder = *model->designPackages.first();
  auto* dimension = static_cast<TAVDimension*>(folder.namespaceElements.get("Product"));
  const auto copy = tav::copyTree(*dimension);
  const auto* copied = tav::as<TAVDimension>(static_cast<TAVObject*>(copy.get()));
  const TAVClassifierMap& map = *copied->getDestinationOfClassifierMap();
  EXPECT_EQ(map.destinationClassifier.get(), copied);
  EXPECT_EQ(map.sourceClassifiers.first(), folder.namespaceElements.get("Products"));
  EXPECT_EQ(map.featureMaps.first()->destinationFeature.get(), copied->features.first());
  EXPECT_NE(copied->features.first(), dimension->features.first());
}

TEST(Model, ImportingUnderATakenNameRenamesTheElementItself) {
  auto model = tav::make<TAVStoreModel>();
  auto& schema = model->addDataPackage(tav::make<TAVOlapSchema>());
  auto& folder = model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("Dimensions"), '/');
  std::vector<std::string> names;
  for (int i = 0; i < 3; ++i) {
    auto dimension = tav::make<TAVDimension>("Date");
    schema.addImportedNamespaceElementUniqueName(*dimension, '/');
    names.push_back(folder.addNamespaceElementUniqueName(std::move(dimension), '/').getName().str());
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Date", "Date/2", "Date/3"}));
  EXPECT_EQ(schema.getModelObjectCount(), 3);
  tav::destroy(*folder.namespaceElements.get("Date/2"));
  EXPECT_EQ(schema.importedNamespaceElements.getCount(), 2);
}

TEST(Model, AnEnumerationRefusesWhatItDoesNotKnow) {
  EXPECT_THROW(TAVAggregationOperatorType(8), TAVException);
  EXPECT_THROW(TAVDimensionType(-1), TAVException);
  EXPECT_TRUE(TAVAggregationOperatorType::isValid(7));
}

TEST(Model, ANestingOfAHundredThousandIsWalkedCopiedAndDeleted) {
  auto model = tav::make<TAVStoreModel>();
  auto* folder = &model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("p"), '/');
  for (int i = 1; i < 100000; ++i) folder = &folder->addNamespaceElement(tav::make<TAVDesignPackage>("p"));
  TAVObjectCollector packages(9);
  model->depthTraversal(packages);
  EXPECT_EQ(packages.getObjects().size(), 100000U);
  EXPECT_EQ(tav::copyTree(*model)->getName(), "");
}

}  // namespace
