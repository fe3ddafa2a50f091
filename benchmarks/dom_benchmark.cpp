// Parsing, and looking children up by their tags.

#include <benchmark/benchmark.h>

#include <string>

#include "framework/dom/dom.h"

namespace {

// Objects with an ID, a name and a few settings, indented: the shape of most of a definition.
std::string definition(std::int64_t objects) {
  std::string text = "<Database xmlns=\"http://schemas.microsoft.com/analysisservices/2003/engine\">\n";
  for (std::int64_t i = 0; i < objects; ++i) {
    const std::string number = std::to_string(i);
    text.append("  <Attribute>\n    <ID>Attribute ").append(number).append("</ID>\n    <Name>Attribute ");
    text.append(number).append("</Name>\n    <Usage>Regular</Usage>\n    <KeyColumns>\n");
    text.append("      <KeyColumn>\n        <DataType>Integer</DataType>\n");
    text.append("        <Source xsi:type=\"ColumnBinding\">\n          <TableID>dbo_Table</TableID>\n");
    text.append("        </Source>\n      </KeyColumn>\n    </KeyColumns>\n  </Attribute>\n");
  }
  return text + "</Database>\n";
}

void parse(benchmark::State& state) {
  const std::string text = definition(state.range(0));
  for (auto _ : state) {
    TAVDOM dom(nullptr);
    benchmark::DoNotOptimize(dom.parseText(text, "benchmark"));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(parse)->Arg(100)->Arg(10000)->Arg(200000)->Unit(benchmark::kMillisecond);

void parseNested(benchmark::State& state) {
  std::string text;
  for (std::int64_t i = 0; i < state.range(0); ++i) text += "<a>";
  for (std::int64_t i = 0; i < state.range(0); ++i) text += "</a>";
  for (auto _ : state) {
    TAVDOM dom(nullptr);
    benchmark::DoNotOptimize(dom.parseText(text, "benchmark"));
  }
}
BENCHMARK(parseNested)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

// The last of so many children, each with a tag of its own.
void findLastTag(benchmark::State& state) {
  std::string text = "<r>";
  for (std::int64_t i = 0; i < state.range(0); ++i) text.append("<t").append(std::to_string(i)).append("/>");
  TAVDOM dom(nullptr);
  const TAVDOMElement* root = dom.parseText(text + "</r>", "benchmark");
  const std::string tag = std::string("t").append(std::to_string(state.range(0) - 1));
  for (auto _ : state) benchmark::DoNotOptimize(root->getFirstElement(tag));
}
BENCHMARK(findLastTag)->Arg(4)->Arg(31)->Arg(32)->Arg(1000)->Arg(100000);

// A tag that none of so many equal children has.
void findAbsentTag(benchmark::State& state) {
  std::string text = "<r>";
  for (std::int64_t i = 0; i < state.range(0); ++i) text += "<Dimension/>";
  TAVDOM dom(nullptr);
  const TAVDOMElement* root = dom.parseText(text + "</r>", "benchmark");
  for (auto _ : state) benchmark::DoNotOptimize(root->getFirstElement("Annotations"));
}
BENCHMARK(findAbsentTag)->Arg(4)->Arg(31)->Arg(32)->Arg(1000)->Arg(100000);

}  // namespace
