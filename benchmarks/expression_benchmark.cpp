// Parsing expressions, and visiting what they name.

#include <benchmark/benchmark.h>

#include <string>

#include "expressions/script_statements.h"
#include "framework/expression/analyzer.h"
#include "framework/expression/parser.h"

namespace {

// What calculated members look like: references, a few calls, a CASE, a comment.
std::string script(std::int64_t bytes) {
  std::string text = "0";
  for (int i = 0; static_cast<std::int64_t>(text.size()) < bytes; ++i) {
    const std::string number = std::to_string(i);
    text.append("\n + IIF([Measures].[Sales ").append(number).append("] = 0, NULL, -- no sales, no margin\n");
    text.append("  ([Measures].[Sales ").append(number).append("] - [Measures].[Cost ").append(number);
    text += "]) / [Measures].[Sales])";
    text += " + CASE WHEN [Date].[Calendar].CurrentMember IS [Date].[Calendar].&[2009] THEN .5";
    text += " ELSE VBA!Round(Sum(PeriodsToDate([Date].[Calendar].[Year]), [Measures].[Cost]), 2) END";
  }
  return text;
}

void run(benchmark::State& state, const std::string& text, tav::ExpressionLanguage language) {
  for (auto _ : state) benchmark::DoNotOptimize(tav::parseExpression(text, language).nodes.size());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void parseMdx(benchmark::State& state) {
  run(state, script(state.range(0)), tav::ExpressionLanguage::mdx);
}
BENCHMARK(parseMdx)->Arg(1000)->Arg(100000)->Arg(10000000)->Unit(benchmark::kMicrosecond);

void parseSql(benchmark::State& state) {
  run(state, script(state.range(0)), tav::ExpressionLanguage::sql);
}
BENCHMARK(parseSql)->Arg(1000)->Arg(100000)->Arg(10000000)->Unit(benchmark::kMicrosecond);

// A script whose members have expressions as above; it takes as long as these do by themselves, or nearly.
void parseStatements(benchmark::State& state) {
  std::string text = "CALCULATE;";
  for (int i = 0; static_cast<std::int64_t>(text.size()) < state.range(0); ++i)
    text += "\nCREATE MEMBER CURRENTCUBE.[Measures].[m" + std::to_string(i) + "] AS " + script(800) +
            ",\nFORMAT_STRING = \"#,##0\", VISIBLE = 1;\nSCOPE([Measures].[Sales]); THIS = 2 * 3; END SCOPE;";
  for (auto _ : state) benchmark::DoNotOptimize(tav::parseScript(text).size());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(parseStatements)->Arg(1000)->Arg(100000)->Arg(10000000)->Unit(benchmark::kMicrosecond);

// So many of one piece: each is what would cost most if something were done again for every piece before it.
void parseRepeated(benchmark::State& state, const std::string& piece) {
  std::string text;
  for (std::int64_t i = 0; i < state.range(0); ++i) text += piece;
  run(state, text, tav::ExpressionLanguage::mdx);
}
#define REPEATED(name, piece) \
  BENCHMARK_CAPTURE(parseRepeated, name, piece)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond)
REPEATED(chain, "[Measures].[Sales] + ");
REPEATED(openBrackets, "(");
REPEATED(openCalls, "f(");
REPEATED(strayBrackets, "){");
REPEATED(openCases, "CASE WHEN ");
REPEATED(prefixes, "- ");
REPEATED(blocks, "/* x */");
REPEATED(openComments, "/* x ");
REPEATED(spacedDots, "[Measures] . ");
REPEATED(libraries, "VBA ! ");
REPEATED(quotes, "'x''");
REPEATED(keys, "&[1]");

class Ignoring : public TAVExpressionAnalyzer {
 public:
  Ignoring()
      : TAVExpressionAnalyzer(nullptr, TAVExpressionToolType(TAVExpressionToolType::kAnalysisServices),
                              TAVExpressionLangType(TAVExpressionLangType::kMdx)) {}
  using TAVExpressionAnalyzer::getSrcElements;
  void getSrcElements(TAVElementNode* node, const TAVVector& /*scope*/, TAVVector& /*result*/) override {
    benchmark::DoNotOptimize(node->getElementNamePartCount());
  }
  TAVFeature* getDstFeature(TAVClassifier* /*classifier*/, const TAVString& /*name*/, int /*n*/) override {
    return nullptr;
  }
};

void analyze(benchmark::State& state) {
  const auto map = tav::make<TAVFeatureMap>();
  map->operation = script(state.range(0));
  Ignoring analyzer;
  for (auto _ : state) analyzer.parse(map.get());
  state.SetBytesProcessed(state.iterations() * map->operation.length());
}
BENCHMARK(analyze)->Arg(1000)->Arg(100000)->Arg(10000000)->Unit(benchmark::kMicrosecond);

}  // namespace
