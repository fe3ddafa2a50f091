#include "framework/expression/analyzer.h"

#include <gtest/gtest.h>

#include "framework/model/model.h"
#include "tests/support/corpus.h"

namespace {

constexpr int kMdx = TAVExpressionLangType::kMdx;
constexpr int kSql = TAVExpressionLangType::kSql;

class Lines : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    text += std::string(tav::severityName(event.getSeverity()) == "WARNING" ? "warning " : "? ") +
            event.getMessageId().str() + ": " + event.getText().str() + "\n";
  }
  std::string text;
};

/// Writes down what it is told, and finds the features of one dimension by the last part of a name.
class Recorder : public TAVExpressionAnalyzer {
 public:
  Recorder(Lines* lines, int language)
      : TAVExpressionAnalyzer(
            lines,
            TAVExpressionToolType(language == kSql ? TAVExpressionToolType::kDatabase
                                                   : TAVExpressionToolType::kAnalysisServices),
            TAVExpressionLangType(language)),
        lines_(lines) {}

  void getSrcElements(TAVOperationNode* operation, TAVVector& result) override {
    lines_->text += "call " + operation->getName().str() + "\n";
    for (std::int32_t i = 0; i < operation->getExpressionNodeCount(); ++i)
      lines_->text.append("  ").append(operation->getExpressionNodeByPosition(i)->getText()) += "\n";
    EXPECT_EQ(operation->getExpressionNodeByPosition(-1), nullptr);
    EXPECT_EQ(operation->getExpressionNodeByPosition(operation->getExpressionNodeCount()), nullptr);
    find(operation->getName(), result);
  }
  void getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) override {
    lines_->text += "reference " + node->getName().str() + ":";
    const std::int32_t count = node->getElementNamePartCount();
    for (std::int32_t i = 0; i < count; ++i)
      lines_->text += (i > 0 ? ", " : " ") + node->getElementNamePartByPosition(i)->getName().str();
    lines_->text += "\n";
    EXPECT_EQ(node->getElementNamePartByPosition(-1), nullptr);
    EXPECT_EQ(node->getElementNamePartByPosition(count), nullptr);
    EXPECT_EQ(node->getExpectedElementType(), TAVElementType{77});
    EXPECT_EQ(scope.getCount(), 0);
    EXPECT_EQ(result.getCount(), 0);
    find(node->getElementNamePartByPosition(count - 1)->getName(), result);
  }
  TAVFeature* getDstFeature(TAVClassifier* /*classifier*/, const TAVString& /*name*/, int /*n*/) override {
    return nullptr;
  }

  const TAVDimension* dimension = nullptr;

 private:
  void find(const TAVString& name, TAVVector& result) {
    TAVFeature* feature = dimension ? dimension->features.get(name) : nullptr;
    if (feature) result.add(feature, true, nullptr);
  }
  Lines* lines_;
};

/// A measure /Sales/Calculated/Margin with its map, and a dimension whose features it can be computed from.
struct Model {
  Model() {
    auto& package = store->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("Sales"), '/');
    facts = &package.addNamespaceElement(tav::make<TAVDimension>("Facts"));
    for (const char* name : {"Sales", "Cost", "Rate"}) facts->addFeature(tav::make<TAVMeasure>(name));
    auto& calculated = package.addNamespaceElement(tav::make<TAVDimension>("Calculated"));
    auto& margin = calculated.addFeature(tav::make<TAVMeasure>("Margin"));
    classifierMap = &calculated.addClassifierMap(tav::make<TAVClassifierMap>());
    map = &classifierMap->addFeatureMap(tav::make<TAVFeatureMap>());
    map->addDestinationFeature(margin);
  }

  /// The sources of the map, and behind a bar those of its classifier map.
  [[nodiscard]] std::string sources() const {
    std::string text;
    for (const TAVFeature& feature : map->sourceFeatures) text += feature.getName().str() + " ";
    text += "|";
    for (const TAVClassifier& classifier : classifierMap->sourceClassifiers)
      text += " " + classifier.getName().str();
    return text;
  }

  tav::Owned<TAVStoreModel> store = tav::make<TAVStoreModel>();
  TAVDimension* facts = nullptr;
  TAVClassifierMap* classifierMap = nullptr;
  TAVFeatureMap* map = nullptr;
};

std::string visits(const std::string& expression, int language) {
  const Model model;
  model.map->operation = expression;
  Lines lines;
  Recorder(&lines, language).parse(model.map);
  if (!lines.text.empty()) lines.text.pop_back();
  return lines.text;
}

TEST(Analyzer, Corpus) {
  tav::test::checkCorpus("expression/references.txt", [](const std::string& s) { return visits(s, kMdx); });
}

TEST(Analyzer, SqlCorpus) {
  tav::test::checkCorpus("expression/sql_references.txt",
                         [](const std::string& s) { return visits(s, kSql); });
}

TEST(Analyzer, LinksEachFeatureAndItsOwnerOnceInTheOrderOfTheText) {
  const Model model;
  model.map->operation = "Rate([Sales], [none]) + [Cost] - [Sales] / [Rate]";
  Lines lines;
  Recorder recorder(&lines, kMdx);
  recorder.dimension = model.facts;
  recorder.parse(model.map);
  EXPECT_EQ(model.sources(), "Rate Sales Cost | Facts");
  recorder.parse(model.map);
  EXPECT_EQ(model.sources(), "Rate Sales Cost | Facts");
}

TEST(Analyzer, WhatAVisitReturnsIsLinkedBeforeTheNextOne) {
  const Model model;
  model.map->operation = "[Sales] + [Cost]";
  struct Watching : Recorder {
    using Recorder::Recorder;
    void getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) override {
      seen += model->sources() + "; ";
      Recorder::getSrcElements(node, scope, result);
    }
    const Model* model = nullptr;
    std::string seen;
  };
  Lines lines;
  Watching watching(&lines, kMdx);
  watching.model = &model;
  watching.dimension = model.facts;
  watching.parse(model.map);
  EXPECT_EQ(watching.seen, "|; Sales | Facts; ");
}

TEST(Analyzer, ReadsAMapThatIsNotPlaced) {
  const auto map = tav::make<TAVFeatureMap>();
  map->operation = "[Sales] +";
  const Model model;
  Lines lines;
  Recorder recorder(&lines, kMdx);
  recorder.dimension = model.facts;
  recorder.parse(map.get());
  EXPECT_EQ(
      lines.text,
      "warning TAVEXPR_W0001: Expression, line 1, column 10: expected a value\nreference [Sales]: Sales\n");
  EXPECT_EQ(map->sourceFeatures.getCount(), 1);
  recorder.parse(nullptr);
}

TEST(Analyzer, TheCurrentMapIsTheCallersAlone) {
  const Model model;
  Lines lines;
  Recorder recorder(&lines, kMdx);
  EXPECT_EQ(recorder.getCurrentFeatureMap(), nullptr);
  recorder.setCurrentFeatureMap(model.map);
  recorder.parse(tav::make<TAVFeatureMap>().get());
  EXPECT_EQ(Recorder(recorder).getCurrentFeatureMap(), model.map);
  recorder.clearCurrentFeatureMap();
  EXPECT_EQ(recorder.getCurrentFeatureMap(), nullptr);
}

TEST(Analyzer, KnowsToolsAndLanguagesByNumber) {
  EXPECT_TRUE(TAVExpressionToolType::isValid(0) && TAVExpressionToolType::isValid(5));
  EXPECT_FALSE(TAVExpressionToolType::isValid(-1) || TAVExpressionToolType::isValid(4) ||
               TAVExpressionToolType::isValid(6));
  EXPECT_TRUE(TAVExpressionLangType::isValid(0) && TAVExpressionLangType::isValid(6));
  EXPECT_THROW(TAVExpressionLangType(5), TAVException);
  EXPECT_FALSE(TAVArgumentType::isValid(3));
}

}  // namespace
