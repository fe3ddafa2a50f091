#pragma once

// The coverage of several models: a line for each, and their total.

#include <array>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "exports/answers/shown_text.h"
#include "lineage/coverage.h"

namespace tav {

struct ModelCoverage {
  std::string model;
  std::string input;
  CoverageCount attributes;
  CoverageCount measures;
  std::array<std::size_t, kOpenNameStateCount> nameCounts{};
  std::vector<std::string> notes;

  [[nodiscard]] std::size_t percent() const noexcept { return percentOf(attributes, measures); }
};

/// What a model's line says of its coverage. Passwords are masked.
ModelCoverage summarizeCoverage(const LineageGraph& graph, const Coverage& coverage);

/// For people. Safe for a terminal.
void writeCoverageText(std::span<const ModelCoverage> models, std::ostream& out, const TextStyle& style = {});

/// One JSON document: `{"format":"xmla-coverage-models/1","percent":...,"attributes":...,"measures":...,
/// "models":[...]}`.
void writeCoverageJson(std::span<const ModelCoverage> models, std::ostream& out);

}  // namespace tav
