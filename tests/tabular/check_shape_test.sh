#!/usr/bin/env bash
# Shows that check_shape.sh finds every kind of fault, and nothing else, in a few sources made for it.
set -euo pipefail
check=$(dirname "$(realpath "${BASH_SOURCE[0]}")")/check_shape.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"
mkdir -p java/m
put() { printf '%s\n' "${@:2}" >"$1"; }

put roles.h 'inline constexpr std::string_view kCube = "Cube";' 'inline constexpr std::string_view kDataSourceView =' \
  '    "DataSourceView";' 'inline constexpr std::string_view kKpis = "KPIs";' \
  'inline constexpr std::array kKpiParts{KpiPart{"Value", "KPI Value"}, KpiPart{"Goal", "KPI Goal"}};'
put java/Labels.java 'static final String CUBE = "Cube";' 'static final String DATA_SOURCE_VIEW =' \
  '    "DataSourceView";' 'enum KpiPart {' 'VALUE("Value", "KPI Value"),' 'GOAL("Goal", "KPI Goal");'
put java/LineageMaps.java 'make("TAVFeatureMap");'
put java/Import.java 'set(Labels.CUBE, Labels.DATA_SOURCE_VIEW, "Cube of someone", Labels.KpiPart.GOAL.text);'
put java/m/Language.java 'field("Value");'
bash "$check" roles.h java

sed -i 's/"KPI Goal"/"KPI Aim"/' java/Labels.java
put java/More.java 'static final String MINE = "Cube";' 'set("KPI Value", make("TAVClassifierMap"));'
sed -i '1i static final String KPIS = "Kpis";' java/Labels.java
expected='"Goal", "KPI Aim": no such label in the framework
KPIS = "Kpis": no such label in the framework
"KPI Value": a label, in More.java
"Cube": a label, in More.java
KPIS: not used
"TAVClassifierMap": made in More.java'
if found=$(bash "$check" roles.h java); then
  echo 'faults, but no failure' >&2
  exit 1
fi
diff <(echo "$expected") <(echo "$found")

put java/Labels.java
if bash "$check" roles.h java >/dev/null; then
  echo 'no labels, but no failure' >&2
  exit 1
fi
