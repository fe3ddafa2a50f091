#include <gtest/gtest.h>

#include "bridge/import.h"
#include "framework/modelbridge/host_observer.h"
#include "tests/support/corpus.h"

// The texts that tests put together are read by people, and few.
// NOLINTBEGIN(performance-inefficient-string-concatenation)
namespace {

class Observer : public tav::HostObserver {
 public:
  bool wantsDetails() override { return true; }
};

/// Keeps the warnings.
class Warnings : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    const std::string identifier = event.getMessageId().str();
    if (identifier.ends_with("W0014") || identifier.ends_with("W0015"))
      lines += "\n" + identifier + " " + event.getText().str();
  }
  std::string lines;
};

/// "cube Sales / measure Amount": the end of what leads to an item.
std::string nameOf(const tav::Details& details, tav::ItemId id) {
  const tav::DetailItem& item = details.item(id);
  if (!item.object) return std::string(tav::rowOf(item.kind).name) + " " + std::string(item.name);
  const std::string path = item.object->getPath(true).str();
  return path.substr(path.rfind('/', path.rfind('/') - 1) + 1);
}

/// Whether a script defines an item: one that only the details have, or a calculated measure.
bool isOfScript(const tav::Details& details, tav::ItemId id) {
  const tav::DetailItem& item = details.item(id);
  if (item.object) return nameOf(details, id).starts_with("Calculated Measures/");
  return item.kind >= tav::ObjectKind::namedSet && item.kind <= tav::ObjectKind::scriptStatement;
}

/// What the details say of what the script defines, in the order in which it is said.
std::string textOf(const tav::Details& details) {
  std::string text;
  const auto line = [&](std::string_view made) { text.append(text.empty() ? "" : "\n").append(made); };
  for (tav::ItemId id = 0; id < details.items().size(); ++id)
    if (!details.item(id).object && isOfScript(details, id))
      line(nameOf(details, id) + " := " + tav::test::escape(details.item(id).text));
  for (const tav::DetailSetting& setting : details.settings()) {
    if (isOfScript(details, setting.item))
      line(nameOf(details, setting.item) + ": " + std::string(setting.name) + " = " +
           std::string(setting.value));
  }
  for (const tav::DetailRelation& relation : details.relations()) {
    const bool isOfWhole = relation.kind == tav::RelationKind::basis && details.item(relation.to).object &&
                           tav::is<TAVAliasClassifier>(*details.item(relation.to).object);
    if (isOfWhole || isOfScript(details, relation.from) || isOfScript(details, relation.to))
      line(nameOf(details, relation.from) + " -" + std::string(tav::rowOf(relation.kind).name) + "> " +
           nameOf(details, relation.to));
  }
  for (const tav::OpenName& name : details.openNames()) {
    if (isOfScript(details, name.item))
      line("? " + std::string(name.name) + ": " + std::string(tav::openNameStateText(name.state)) +
           (name.note.empty() ? "" : ", ") + std::string(name.note));
  }
  return text;
}

std::string show(const std::string& script) {
  static const std::string database = tav::test::readFile(tav::test::testFile("scripts/shop.xmla"));
  std::string document = database;
  // What is said of calculations beside the script stands behind it as it is.
  const std::size_t end = std::min(script.find("<CalculationProperties>"), script.size());
  document.insert(document.find("</MdxScript>"), script.substr(end));
  std::string escaped;
  for (const char c : tav::test::unescape(script.substr(0, end)))
    escaped += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  document.replace(document.find("SCRIPT"), 6, escaped);
  const tav::test::TemporaryFolder folder;
  Observer observer;
  Warnings warnings;
  const tav::Owned<TAVStoreModel> model(
      execAsImport("test", TAVFile{TAVString(folder.write("shop.xmla", document))}, &warnings));
  if (!observer.details()) return "no details";
  return textOf(*observer.details()) + warnings.lines;
}

TEST(Names, MeanWhatTheCubeMeans) {
  tav::test::checkCorpus("scripts/names.txt", show);
}

/// Members and sets by the thousand, each of which names all kinds of others and a mistake.
TEST(Names, CostTheSameHoweverManyThereAre) {
  std::string script;
  for (int i = 0; i < 20000; ++i) {
    const std::string number = std::to_string(i);
    script += "CREATE SET CURRENTCUBE.[s" + number + "] AS {[Product].[Category].[x" + number +
              "], [Catgory" + number + "], [s" + std::to_string(i / 2) +
              "]};SCOPE([Measures].[Amount]);THIS=" + number + ";";
  }
  EXPECT_FALSE(show(script).empty());
}

}  // namespace
// NOLINTEND(performance-inefficient-string-concatenation)
