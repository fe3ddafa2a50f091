package KORV.bridges.MicrosoftSqlServerAs.Import.model;

/**
 * The labels by which a model tells what its objects stand for, native types and names of folders: those that
 * tabular definitions need of the list in framework/model/roles.h, under the same names.
 */
public final class Labels {
  public static final String TABULAR_DATABASE = "Tabular Database";
  public static final String DATA_SOURCE = "DataSource";
  public static final String DATA_SOURCE_VIEW = "DataSourceView";

  public static final String DATA_SOURCE_VIEWS = "Data Source Views";
  public static final String DIMENSIONS = "Dimensions";
  public static final String CUBES = "Cubes";

  public static final String CALCULATED_MEASURES = "Calculated Measures";
  public static final String KPIS = "KPIs";

  public static final String CUBE = "Cube";
  public static final String PERSPECTIVE = "Perspective";
  public static final String DIMENSION = "Dimension";
  public static final String CALCULATED_MEASURE = "Calculated Measure";
  public static final String KPI = "KPI";
  public static final String CALCULATED_COLUMN = "Calculated Column";
  public static final String CALCULATED_TABLE_COLUMN = "Calculated Table Column";

  public static final String TABLE = "Table";
  public static final String NAMED_QUERY = "NamedQuery";
  public static final String UNRESOLVED_QUERY = "DatabaseQuery";
  public static final String SQL_CONDITION = "SQL CONDITION";

  public static final String SOURCE_TABLES = "sourceTables";
  public static final String COUNTED_TABLES = "countedTables";

  /** The parts of a KPI in their order: the name of a part's measure, and that measure's native type. */
  public enum KpiPart {
    VALUE("Value", "KPI Value"),
    GOAL("Goal", "KPI Goal"),
    STATUS("Status", "KPI Status"),
    TREND("Trend", "KPI Trend");

    public final String text;
    public final String nativeType;

    KpiPart(String text, String nativeType) {
      this.text = text;
      this.nativeType = nativeType;
    }
  }

  private Labels() {}
}
