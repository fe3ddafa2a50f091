// The costs that grow with a model: they are given per object, and stay near one figure whatever the size.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <sstream>
#include <streambuf>

#include "framework/model/model.h"
#include "framework/serialization/model_reader.h"
#include "framework/serialization/model_writer.h"

namespace {

std::string nameOf(std::int64_t i) {
  return std::string("Column ").append(std::to_string(i));
}

void perObject(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

tav::Owned<TAVTable> tableOf(std::int64_t columns) {
  auto table = tav::make<TAVTable>("t");
  for (std::int64_t i = 0; i < columns; ++i) table->addFeature(tav::make<TAVColumn>(nameOf(i)));
  return table;
}

void addNamed(benchmark::State& state) {
  for (auto _ : state) {
    auto table = tableOf(state.range(0));
    state.PauseTiming();
    table.reset();
    state.ResumeTiming();
  }
  perObject(state);
}

void addEqualNames(benchmark::State& state) {
  for (auto _ : state) {
    auto table = tav::make<TAVTable>("t");
    for (std::int64_t i = 0; i < state.range(0); ++i)
      table->addFeatureUniqueName(tav::make<TAVColumn>("Sales"), '/');
    state.PauseTiming();
    table.reset();
    state.ResumeTiming();
  }
  perObject(state);
}

void linkAndUnlink(benchmark::State& state) {
  const auto table = tableOf(state.range(0));
  auto dimension = tav::make<TAVDimension>("d");
  TAVFeatureMap& map =
      dimension->addClassifierMap(tav::make<TAVClassifierMap>()).addFeatureMap(tav::make<TAVFeatureMap>());
  for (auto _ : state) {
    for (TAVFeature& column : table->features) map.addSourceFeature(column);
    for (TAVFeature& column : table->features) tav::unlink<&TAVFeatureMap::sourceFeatures>(map, column);
  }
  perObject(state);
}

void getByName(benchmark::State& state) {
  const auto table = tableOf(state.range(0));
  for (auto _ : state)
    for (std::int64_t i = 0; i < state.range(0); ++i)
      benchmark::DoNotOptimize(table->features.get(nameOf(i)));
  perObject(state);
}

void deleteInRandomOrder(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto table = tableOf(state.range(0));
    std::vector<TAVFeature*> columns;
    for (TAVFeature& column : table->features) columns.push_back(&column);
    std::shuffle(columns.begin(), columns.end(), std::mt19937(1));
    state.ResumeTiming();
    for (TAVFeature* column : columns) tav::destroy(*column);
  }
  perObject(state);
}

tav::Owned<TAVStoreModel> modelOf(std::int64_t columns) {
  auto model = tav::make<TAVStoreModel>("m");
  auto& folder = model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("p"), '/');
  auto& table = folder.addNamespaceElement(tableOf(columns));
  for (TAVFeature& column : table.features) column.physicalName = column.getName();
  return model;
}

/// Counts what is written and throws it away.
class Sink : public std::streambuf {
 public:
  std::int64_t size = 0;

 protected:
  std::streamsize xsputn(const char* /*text*/, std::streamsize count) override {
    size += count;
    return count;
  }
};

void save(benchmark::State& state) {
  const auto model = modelOf(state.range(0));
  Sink sink;
  std::ostream out(&sink);
  for (auto _ : state) tav::writeModel(*model, out);
  state.SetBytesProcessed(sink.size);
  perObject(state);
}

void load(benchmark::State& state) {
  std::ostringstream out;
  tav::writeModel(*modelOf(state.range(0)), out);
  const std::string text = out.str();
  for (auto _ : state) {
    auto model = tav::loadModelText(text, "model.xml");
    state.PauseTiming();
    model.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  perObject(state);
}

BENCHMARK(addNamed)->Range(1000, 1000000);
BENCHMARK(addEqualNames)->Range(1000, 1000000);
BENCHMARK(linkAndUnlink)->Range(1000, 1000000);
BENCHMARK(getByName)->Range(1000, 1000000);
BENCHMARK(deleteInRandomOrder)->Range(1000, 1000000);
BENCHMARK(save)->Range(1000, 1000000);
BENCHMARK(load)->Range(1000, 1000000);

}  // namespace
