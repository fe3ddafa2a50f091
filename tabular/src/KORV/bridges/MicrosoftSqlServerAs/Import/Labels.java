package KORV.bridges.MicrosoftSqlServerAs.Import;

/**
 * The labels by which a model tells what its objects stand for, native types and names of folders: those that
 * tabular definitions need of the list in framework/model/roles.h, under the same names.
 */
final class Labels {
  static final String TABULAR_DATABASE = "Tabular Database";
  static final String DATA_SOURCE = "DataSource";
  static final String DATA_SOURCE_VIEW = "DataSourceView";

  static final String DATA_SOURCE_VIEWS = "Data Source Views";
  static final String DIMENSIONS = "Dimensions";
  static final String CUBES = "Cubes";

  static final String CALCULATED_MEASURES = "Calculated Measures";
  static final String KPIS = "KPIs";

  static final String CUBE = "Cube";
  static final String PERSPECTIVE = "Perspective";
  static final String DIMENSION = "Dimension";
  static final String CALCULATED_MEASURE = "Calculated Measure";
  static final String KPI = "KPI";
  static final String CALCULATED_COLUMN = "Calculated Column";
  static final String CALCULATED_TABLE_COLUMN = "Calculated Table Column";

  static final String TABLE = "Table";
  static final String NAMED_QUERY = "NamedQuery";
  static final String UNRESOLVED_QUERY = "DatabaseQuery";

  /** The parts of a KPI in their order: the name of a part's measure, and that measure's native type. */
  enum KpiPart {
    VALUE("Value", "KPI Value"),
    GOAL("Goal", "KPI Goal"),
    STATUS("Status", "KPI Status"),
    TREND("Trend", "KPI Trend");

    final String text;
    final String nativeType;

    KpiPart(String text, String nativeType) {
      this.text = text;
      this.nativeType = nativeType;
    }
  }

  private Labels() {}
}
