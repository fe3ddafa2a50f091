// Whatever a real definition says is in the model, in the details or passed over: held against a reading of
// the document that knows nothing of how either is made.

#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <set>

#include "bridge/import.h"
#include "framework/dom/dom.h"
#include "framework/model/reflection.h"
#include "framework/model/tree_walk.h"
#include "framework/modelbridge/host_observer.h"
#include "lineage/lineage_graph.h"
#include "tests/support/corpus.h"
#include "views/dsv_reader.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::set<std::string, std::less<>>;

class Silent : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

class DetailsObserver : public tav::HostObserver {
 public:
  bool wantsDetails() override { return true; }
};

/// Elements that say nothing of a definition's contents.
const Texts kPassedOver{"CreatedTimestamp",
                        "LastSchemaUpdate",
                        "LastProcessed",
                        "LastUpdate",
                        "State",
                        "ProcessingState",
                        "EstimatedSize",
                        "CurrentStorageMode",
                        "AttributeHierarchyProcessingState"};
/// Elements that the model keeps, under no name of theirs.
const Texts kInModel{"Name",
                     "ID",
                     "Description",
                     "Value",
                     "Goal",
                     "Status",
                     "Trend",
                     "ConnectionString",
                     "Text",
                     "MeasureExpression",
                     "CalculationReference"};

std::string lastPart(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return std::string(dot == name.npos ? name : name.substr(dot + 1));
}

/// What model and details of one definition say.
class Said {
 public:
  Said(const TAVStoreModel& model, const tav::Details& details) {
    tav::forEachObject(model, [&](const TAVObject& object) {
      texts_.insert(object.getName().str());
      for (const tav::AttributeRow* row : tav::classInfo(object.classId()).attributes) {
        const tav::Value value = row->get(object);
        if (const auto* text = std::get_if<std::string_view>(&value)) texts_.emplace(*text);
      }
      if (const auto* map = tav::as<TAVFeatureMap>(&object))
        for (const TAVFeature& source : map->sourceFeatures) addSource(source);
    });
    for (const tav::DetailItem& item : details.items())
      for (const std::string_view text : {item.name, item.text}) texts_.emplace(text);
    for (const tav::DetailSetting& setting : details.settings()) addSetting(setting);
    for (const tav::DetailRelation& relation : details.relations()) {
      const tav::DetailItem& from = details.item(relation.from);
      if (from.object) addSource(*from.object);
      referred_.emplace(from.name);
      referred_.insert(ids_[relation.from]);
      texts_.emplace(relation.text);
    }
    for (const tav::OpenName& name : details.openNames()) {
      referred_.emplace(name.name);
      columns_.insert(lastPart(name.name));
    }
  }

  /// Whether a leaf is said once more than it was asked for.
  bool take(const std::string& tag, std::string_view value) {
    if (kInModel.contains(tag) && texts_.contains(value)) return true;
    auto& count = settings_[{tag, std::string(value)}];
    return count-- > 0 || texts_.contains(value);
  }
  bool refersTo(std::string_view id) const { return referred_.contains(id) || texts_.contains(id); }
  bool readsColumn(const std::string& name) const { return columns_.contains(name); }

 private:
  void addSource(const TAVModelObject& object) {
    referred_.insert(object.getName().str());
    columns_.insert(object.getName().str());
    columns_.insert(object.physicalName.str());
  }

  void addSetting(const tav::DetailSetting& setting) {
    const std::string name = lastPart(setting.name);
    if (name == "ID") ids_[setting.item] = setting.value;
    texts_.insert(std::string(setting.name));
    ++settings_[{name, std::string(setting.value)}];
    // Labels stand in the names of settings, folded values side by side.
    std::string_view rest = setting.name;
    for (std::size_t dot = 0; (dot = rest.find('.')) != rest.npos; rest.remove_prefix(dot + 1))
      texts_.emplace(rest.substr(0, dot));
    addFolded(setting.value);
  }

  void addFolded(std::string_view values) {
    while (!values.empty()) {
      const std::size_t end = std::min({values.find(", "), values.find(": "), values.size()});
      const std::string_view part = values.substr(0, end);
      const std::size_t blank = part.find(' ');
      if (blank != part.npos)
        ++settings_[{std::string(part.substr(0, blank)), std::string(part.substr(blank + 1))}];
      folded_.emplace(part);
      texts_.emplace(part);
      values.remove_prefix(std::min(values.size(), end + 2));
    }
  }

  Texts texts_, referred_, columns_, folded_;
  std::map<tav::ItemId, std::string> ids_;
  std::map<std::pair<std::string, std::string>, int> settings_;
};

struct Counts {
  int leaves = 0, passedOver = 0, references = 0, columns = 0;
};

/// Walks a document and asks for each leaf of it.
class Reading {
 public:
  Reading(Said& said, Counts& counts) : said_(said), counts_(counts) {}

  Texts missing(const TAVDOMElement& database) {
    std::vector<std::pair<const TAVDOMElement*, std::string>> open{{&database, "Database"}};
    while (!open.empty()) {
      const auto [element, path] = open.back();
      open.pop_back();
      const std::string tag(element->getLocalName());
      if (tag == "Schema" || tag == "Annotations" || tag == "Commands") continue;
      if (element->getElementCount() == 0) readLeaf(*element, tag, path);
      readBinding(*element, path);
      for (const TAVDOMElement& part : element->getElements())
        open.emplace_back(&part, path + "/" + std::string(part.getLocalName()));
    }
    return missing_;
  }

 private:
  static bool isUsage(const std::string& path) {
    return path.find("MeasureGroup/Dimensions/Dimension/Attributes/") != path.npos;
  }

  void readLeaf(const TAVDOMElement& element, const std::string& tag, const std::string& path) {
    const std::string_view value = element.getValue();
    if (kPassedOver.contains(tag)) {
      ++counts_.passedOver;
    } else if (tag == "TableID" || tag == "ColumnID" || value.empty() || value == ".") {
      return;
    } else if (tag != "ID" && tag.ends_with("ID")) {
      ++counts_.references;
      if (!said_.refersTo(value)) missing_.insert(path + " -> " + std::string(value));
    } else {
      ++counts_.leaves;
      // How a measure group repeats keys of dimensions is held against these.
      if (!isUsage(path) && !said_.take(tag, value)) missing_.insert(path + " = " + std::string(value));
    }
  }

  void readBinding(const TAVDOMElement& element, const std::string& path) {
    const TAVDOMElement* column = element.getFirstElement("ColumnID");
    if (!column) return;
    ++counts_.columns;
    const std::string name = TAVDsvReader::stringUnescape(column->getValue()).str();
    if (!said_.readsColumn(name) && !said_.readsColumn(std::string(column->getValue())))
      missing_.insert(path + " binds " + name);
  }

  Said& said_;
  Counts& counts_;
  Texts missing_;
};

const TAVDOMElement* findDatabase(const TAVDOMElement& root) {
  if (root.getLocalName() == "Database") return &root;
  const TAVDOMElement* command = root.getFirstElementLocal("Alter");
  const TAVDOMElement* definition = (command ? command : &root)->getFirstElementLocal("ObjectDefinition");
  return definition ? definition->getFirstElementLocal("Database") : nullptr;
}

TEST(Samples, EveryElementIsInTheModelOrItsDetailsOrPassedOver) {
  for (const auto& entry : fs::directory_iterator(SAMPLES "/multidimensional")) {
    const std::string path = entry.path().string();
    Silent silent;
    const DetailsObserver observer;
    const tav::Owned<TAVStoreModel> model(execAsImport("test", TAVFile{TAVString(path)}, &silent));
    ASSERT_TRUE(observer.details()) << path;
    TAVDOM document(&silent);
    const TAVDOMElement* database = findDatabase(*document.parseFile(TAVFile{TAVString(path)}));
    if (!database) continue;
    Said said(*model, *observer.details());
    Counts counts;
    for (const std::string& line : Reading(said, counts).missing(*database))
      ADD_FAILURE() << path << ": " << line;
    std::cout << entry.path().filename().string() << ": " << counts.leaves << " values, " << counts.references
              << " references, " << counts.columns << " bound columns, " << counts.passedOver
              << " passed over\n";
  }
}

std::string relationsOf(const std::string& path) {
  Silent silent;
  const DetailsObserver observer;
  const tav::Owned<TAVStoreModel> model(execAsImport("test", TAVFile{TAVString(path)}, &silent));
  const tav::LineageGraph graph({*model, observer.details()});
  std::set<std::string> lines;
  for (const tav::LineageEdge& edge : graph.edges()) {
    if (edge.relation == tav::kNoRelation || edge.kind == tav::RelationKind::member) continue;
    std::string line(tav::edgeKindName(edge.kind));
    line.append(": ").append(graph.qualifiedName(edge.from));
    line.append(" -> ").append(graph.qualifiedName(edge.to));
    lines.insert(std::move(line));
  }
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : "\n").append(line);
  return text;
}

TEST(Samples, CubesRelateWhatTheirDefinitionsSay) {
  if (!fs::exists(SAMPLES "/multidimensional")) GTEST_SKIP();
  tav::test::checkCorpus("samples/relations.txt", [](const std::string& sample) {
    return relationsOf(SAMPLES "/multidimensional/" + sample);
  });
}

}  // namespace
