#include <gtest/gtest.h>

#include "framework/dom/dom.h"
#include "framework/model/model.h"
#include "views/dsv_reader.h"

namespace {

/// Keeps the texts of what is logged.
class Log : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override { texts.push_back(event.getText().str()); }
  std::vector<std::string> texts;
};

class DsvAnalyzer : public testing::Test {
 protected:
  TAVColumn& addColumn(std::string_view name, std::string_view physicalName) {
    auto column = tav::make<TAVColumn>(name);
    column->setPhysicalName(physicalName);
    return table_->addFeature(std::move(column));
  }

  tav::Owned<TAVStoreModel> model_ = tav::make<TAVStoreModel>("model");
  tav::Owned<TAVTable> table_ = tav::make<TAVTable>("t");
  TAVDsvReader reader_{model_.get(), nullptr, true, true};
  TAVDsvReader::DSVExpressionAnalyzer analyzer_{&reader_, nullptr};
};

TEST_F(DsvAnalyzer, ADestinationIsTheOneFeatureOfItsName) {
  TAVColumn& a = addColumn("Seen", "a");
  addColumn("First", "twice");
  addColumn("Second", "TWICE");
  TAVColumn& shown = addColumn("Only Shown", "c");
  EXPECT_EQ(analyzer_.getDstFeature(table_.get(), "A", 0), &a);
  EXPECT_EQ(analyzer_.getDstFeature(table_.get(), "only shown", 0), &shown);
  EXPECT_EQ(analyzer_.getDstFeature(table_.get(), "twice", 0), nullptr);
  EXPECT_EQ(analyzer_.getDstFeature(table_.get(), "b", 0), nullptr);
  EXPECT_EQ(analyzer_.getDstFeature(nullptr, "a", 0), nullptr);
}

TEST_F(DsvAnalyzer, ATableHasOneCondition) {
  TAVCondition* condition = analyzer_.getDstCondition(table_.get());
  EXPECT_EQ(condition->getName(), "SQL CONDITION");
  EXPECT_EQ(condition->physicalName, "SQL CONDITION");
  EXPECT_EQ(analyzer_.getDstCondition(table_.get()), condition);
  EXPECT_EQ(table_->features.getCount(), 1);
  EXPECT_FALSE(analyzer_.isStarCandidate(condition, false));
  EXPECT_FALSE(analyzer_.isClassifierDefined(table_.get()));
}

TEST_F(DsvAnalyzer, AConditionGivesWayToColumnsOfItsName) {
  addColumn("SQL CONDITION", "a");
  TAVColumn& second = addColumn("SQL CONDITION_2", "b");
  TAVCondition* condition = analyzer_.getDstCondition(table_.get());
  EXPECT_EQ(condition->getName(), "SQL CONDITION_3");
  EXPECT_EQ(analyzer_.getDstCondition(table_.get()), condition);
  tav::destroy(second);
  EXPECT_EQ(analyzer_.getDstCondition(table_.get()), condition) << "also when a lower number is free";
}

TEST_F(DsvAnalyzer, AConditionThatOnlyBeginsLikeItIsAnother) {
  for (const char* name : {"SQL CONDITION_", "SQL CONDITION_draft", "SQL CONDITION_02", "SQL CONDITION 2",
                           "sql condition", "SQL CONDITION_2x"}) {
    auto other = tav::make<TAVCondition>(name);
    other->setPhysicalName(name);
    table_->addFeature(std::move(other));
  }
  table_->addFeature(tav::make<TAVCondition>("SQL CONDITION_4"));  // it has no physical name
  TAVCondition* condition = analyzer_.getDstCondition(table_.get());
  EXPECT_EQ(condition->getName(), "SQL CONDITION");
  EXPECT_EQ(analyzer_.getDstCondition(table_.get()), condition);
}

constexpr std::string_view kView = R"(<DataSourceView xmlns:xs="http://www.w3.org/2001/XMLSchema"
    xmlns:m="urn:schemas-microsoft-com:xml-msprop"><Name>v</Name><Schema><xs:schema><xs:element><xs:complexType>
    <xs:choice><xs:element name="t" m:QueryDefinition="SELECT a FROM (u"><xs:complexType><xs:sequence>
      <xs:element name="a" type="xs:int"/><xs:element name="b" m:ComputedColumnExpression="(a" type="xs:int"/>
    </xs:sequence></xs:complexType></xs:element></xs:choice>
  </xs:complexType></xs:element></xs:schema></Schema></DataSourceView>)";

TEST_F(DsvAnalyzer, ACopyOfAReaderOutlivesItAndFaultsAreWarnings) {
  Log log;
  auto original = std::make_unique<TAVDsvReader>(model_.get(), &log, true, true);
  TAVDsvReader copy(*original);
  reader_ = *original;
  original.reset();
  for (TAVDsvReader* reader : {&copy, &reader_}) {
    TAVDOM dom(nullptr);
    log.texts.clear();
    const auto view = reader->importDataSourceView(dom.parseText(TAVString(kView), "view"));
    const auto* table = tav::as<TAVTable>(view->namespaceElements.first());
    EXPECT_EQ(table->features.get("b")->getDestinationOfFeatureMap()->sourceFeatures.first(),
              table->features.get("a"));
    EXPECT_EQ(table->querySources, "u");
    const std::vector<std::string> expected{"Expression of '/v/t/b', line 1, column 3: expected \")\"",
                                            "Expression of '/v/t', line 1, column 17: expected \")\""};
    EXPECT_EQ(log.texts, expected);
  }
}

}  // namespace
