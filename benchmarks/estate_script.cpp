#include <array>

#include "benchmarks/estate_parts.h"
#include "benchmarks/words.h"

namespace tav::bench {
namespace {

constexpr std::size_t kKpis = 20;

std::string measureOf(const Area& area, Random& random) {
  return "[Measures].[" + random.pick(random.pick(area.groups).measures).name + "]";
}

/// A hierarchy of the area and a level of it, or null when the area has none.
const Dimension* dimensionWithHierarchy(const Area& area, Random& random) {
  const std::size_t start = random.below(area.dimensions.size());
  for (std::size_t i = 0; i < area.dimensions.size(); ++i) {
    const Dimension& dimension = area.dimensions[(start + i) % area.dimensions.size()];
    if (!dimension.hierarchies.empty()) return &dimension;
  }
  return nullptr;
}

std::string earlier(const Area& area, Random& random, const std::string& value) {
  const Dimension* dimension = dimensionWithHierarchy(area, random);
  if (!dimension) return value;
  const Hierarchy& hierarchy = dimension->hierarchies.front();
  const std::string path = "[" + dimension->name + "].[" + hierarchy.name + "]";
  return "( ParallelPeriod( " + path + ".[" + dimension->attributes[hierarchy.levels.front()].name +
         "], 1,\n      " + path + ".CurrentMember ), " + value + " )";
}

/// The expression of a calculated member, in one of the forms that such members mostly have.
std::string expression(const Area& area, std::size_t number, Random& random) {
  const std::string a = measureOf(area, random), b = measureOf(area, random);
  // One in a hundred names a measure that is no longer there.
  if (random.chance(1)) return a + " - [Measures].[Retired " + std::to_string(number) + "]";
  if (number > 0 && random.chance(37))
    return "IIF( " + a + " = 0, NULL,\n      [Measures].[Calculated " + std::to_string(random.below(number)) +
           "] / " + a + " )";
  switch (random.below(4)) {
    case 0:
      return a + " - " + b;
    case 1:
      return "CASE\n      WHEN IsEmpty( " + b + " ) THEN NULL -- nothing to compare with\n      ELSE ( " + a +
             " - " + b + " ) / " + b + "\n    END";
    case 2:
      return a + " - " + earlier(area, random, a);
    default: {
      const Dimension& dimension = random.pick(area.dimensions);
      const Attribute& attribute = random.pick(dimension.attributes);
      return "Aggregate( EXISTING [" + dimension.name + "].[" + attribute.name + "].Members, " + a + " )";
    }
  }
}

void addMember(std::string& text, const Area& area, std::size_t number, Random& random) {
  constexpr std::array<std::string_view, 3> kComments{"/* ", "-- ", "// "};
  if (random.chance(50)) {
    const std::string_view start = random.pick(kComments);
    text += std::string(start) + sentence(random, 8) + (start[0] == '/' && start[1] == '*' ? " */\n" : "\n");
  }
  text += "CREATE MEMBER CURRENTCUBE.[Measures].[Calculated " + std::to_string(number) + "]\n AS ";
  text += expression(area, number, random);
  if (random.chance(88)) text += ",\nFORMAT_STRING = \"#,##0.00;-#,##0.00\"";
  text += ",\nVISIBLE = 1 ,  DISPLAY_FOLDER = '" + random.pick(area.groups).name + "' ;\n\n";
}

std::string scriptHead(const Area& area) {
  return "/*\nThe script of the cube " + area.name +
         ": what is summed up from the leaves comes first.\n*/\nCALCULATE;\n\n";
}

/// A member and, now and then, a set or a scope behind it.
void addStatements(std::string& text, const Area& area, std::size_t number, Random& random) {
  addMember(text, area, number, random);
  const Dimension& dimension = random.pick(area.dimensions);
  if (random.chance(9)) {
    text += "CREATE DYNAMIC SET CURRENTCUBE.[Best " + std::to_string(number) + "]\n AS TopCount( [" +
            dimension.name + "].[" + dimension.attributes[0].name + "].Members, 10, " +
            measureOf(area, random) + " ) ;\n\n";
  }
  if (random.chance(6)) {
    const std::string where = measureOf(area, random), what = measureOf(area, random);
    text += "SCOPE ( " + where + " );\n    This = " + what + " * 1.1; -- planned growth\nEND SCOPE;\n\n";
  }
}

}  // namespace

std::string scriptText(const Area& area, Random& random, std::size_t members) {
  std::string text = scriptHead(area);
  for (std::size_t i = 0; i < members; ++i) addStatements(text, area, i, random);
  return text;
}

std::string scriptOfSize(const Area& area, Random& random, std::uint64_t bytes) {
  std::string text = scriptHead(area);
  for (std::size_t i = 0; text.size() < bytes; ++i) addStatements(text, area, i, random);
  return text;
}

void writeKpis(XmlWriter& to, const Area& area, Random& random, Scale scale) {
  const std::size_t count = scaled(kKpis, scale, 0);
  if (count == 0) return;
  const Element kpis(to, "Kpis");
  for (std::size_t i = 0; i < count; ++i) {
    const Element kpi(to, "Kpi");
    const std::string name =
        std::string(kFigures[i % kFigures.size()]) + " Indicator " + std::to_string(i + 1);
    to.leaf("ID", i == 0 ? "KPI" : "KPI " + std::to_string(i));
    to.leaf("Name", name);
    to.leaf("Description", sentence(random, 14));
    writeTranslations(to, random);
    to.leaf("AssociatedMeasureGroupID", random.pick(area.groups).id);
    const std::string value = "KpiValue( \"" + name + "\" )", goal = "KpiGoal( \"" + name + "\" )";
    to.leaf("Value", measureOf(area, random));
    to.leaf("Goal", "CASE\n    WHEN " + measureOf(area, random) + " > 1000 THEN .30\n    ELSE .15\nEND");
    std::string status = "CASE\n    WHEN ";
    status.append(value).append(" >= ").append(goal).append(" THEN 1\n    WHEN ").append(value);
    status.append(" >= .9 * ").append(goal).append(" THEN 0\n    ELSE -1\nEND");
    to.leaf("Status", status);
    to.leaf("Trend", "IIF( " + value + " > " + earlier(area, random, value) + ", 1, 0 )");
    to.leaf("TrendGraphic", "Standard Arrow");
    to.leaf("StatusGraphic", "Traffic Light - Single");
  }
}

}  // namespace tav::bench
