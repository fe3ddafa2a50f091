#pragma once

// What the functions KPIValue, KPIGoal, KPIStatus and KPITrend mean in an expression.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// A call of one of the functions with the name of a KPI, in quotes of either kind.
struct KpiCall {
  std::string_view part;  ///< the name of the KPI's measure that it gives: "Value", "Goal", ...
  std::string kpi;        ///< without its quotes
  std::string text;       ///< as it is written
};

/// The calls in an MDX expression, in the order of the text.
std::vector<KpiCall> kpiCallsOf(std::string_view expression);

/// The values of the KPIs of all cubes, by cube, KPI and part. Letter case does not tell KPIs apart, the
/// first of equal names counts.
class KpiValues {
 public:
  void add(NodeId cube, std::string_view kpi, std::string_view part, NodeId value);
  /// The value that a call in an expression of `cube` means; kNoNode when there is no such KPI.
  [[nodiscard]] NodeId find(NodeId cube, const KpiCall& call) const;

 private:
  std::unordered_map<std::string, NodeId> values_;
};

}  // namespace tav
