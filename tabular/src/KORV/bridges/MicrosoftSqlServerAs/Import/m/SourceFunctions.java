package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.HashMap;
import java.util.Locale;
import java.util.Map;
import java.util.Set;

/** The functions that open a source: the kind of each, and how its arguments and navigation are read. */
public final class SourceFunctions {
  /** How the arguments tell the address, and what the steps behind it pick. */
  public enum Form {
    /** (server, database); then schema and table. */
    DATABASE,
    /** (server); then database, schema and table. */
    SERVER,
    /** The same, where the steps do not say which of these they pick. */
    STEPS,
    /** Of the options or the steps: project, data set, table. */
    PROJECT,
    /** (text of a connection). */
    TEXT,
    /** (text of a connection, query). */
    QUERY,
    /** (server, database, table). */
    ITEM,
    /** Workspace, item and table, all by steps. */
    WORKSPACE,
    /** (path or URL) of one file. */
    FILE,
    /** (folder, site or account), in which steps pick a file. */
    FOLDER,
    /** Whatever the arguments say: only the kind is known. */
    SERVICE
  }

  public record Opening(String kind, Form form) {}

  /** The kinds whose tables are files. */
  public static final Set<String> FILE_KINDS = Set.of("file", "web", "sharepoint", "wasbs", "abfss", "hdfs");

  private static final Map<String, Opening> OPENINGS = new HashMap<>();
  /** Ends of names of functions that open something, also where the function is not listed. */
  private static final Set<String> ENDS = Set.of(
      "Contents", "Tables", "Feed", "Files", "Accounts", "Domains", "Cubes", "Catalogs", "Data", "Reports");
  /** Words that names of other functions of the language begin with. */
  private static final Set<String> LIBRARY = Set.of("Table", "List", "Record", "Text", "Binary", "Value",
      "Xml", "Json", "Csv", "Excel", "Pdf", "Parquet", "Html", "Cube", "Type", "Function", "Number", "Date",
      "DateTime", "DateTimeZone", "Time", "Duration", "Lines", "Splitter", "Combiner", "Replacer", "Comparer",
      "Character", "Logical", "Uri", "Guid", "Single", "Double", "Int64", "Int32", "Int16", "Int8", "Byte",
      "Decimal", "Currency", "Percentage", "Expression", "Error", "Occurrence", "Order", "Compression",
      "BinaryEncoding", "TextEncoding", "QuoteStyle", "CsvStyle", "ExtraValues", "JoinKind", "JoinAlgorithm",
      "MissingField", "GroupKind", "Day", "RoundingMode", "Precision", "TraceLevel", "Diagnostics", "Culture",
      "Geography", "Geometry");

  private static void add(String kind, Form form, String... functions) {
    for (String function : functions) OPENINGS.put(function, new Opening(kind, form));
  }

  static {
    add("", Form.DATABASE, "Sql.Database");
    add("", Form.SERVER, "Sql.Databases");
    add("oracle", Form.DATABASE, "Oracle.Database");
    add("postgres", Form.DATABASE, "PostgreSQL.Database");
    add("mysql", Form.DATABASE, "MySQL.Database");
    add("teradata", Form.DATABASE, "Teradata.Database");
    add("db2", Form.DATABASE, "DB2.Database");
    add("saphana", Form.DATABASE, "SapHana.Database");
    add("ssas", Form.DATABASE, "AnalysisServices.Database");
    add("ssas", Form.SERVER, "AnalysisServices.Databases");
    add("redshift", Form.STEPS, "AmazonRedshift.Database");
    add("snowflake", Form.SERVER, "Snowflake.Databases");
    add("unitycatalog", Form.SERVER, "Databricks.Catalogs", "Databricks.Contents", "Databricks.Query",
        "DatabricksMultiCloud.Catalogs", "DatabricksMultiCloud.Contents", "DatabricksMultiCloud.Query");
    add("athena", Form.SERVER, "AmazonAthena.Databases");
    add("hive", Form.DATABASE, "ApacheHiveLLAP.Database");
    add("bigquery", Form.PROJECT, "GoogleBigQuery.Database");
    add("sapbw", Form.SERVER, "SapBusinessWarehouse.Cubes");
    add("dataverse", Form.SERVER, "CommonDataService.Database", "Dataverse.Contents");
    add("salesforce", Form.SERVER, "Salesforce.Data", "Salesforce.Reports");
    add("odata", Form.SERVER, "OData.Feed");
    add("kusto", Form.ITEM, "AzureDataExplorer.Contents", "Kusto.Contents");
    add("cosmos", Form.ITEM, "DocumentDB.Contents");
    add("odbc", Form.TEXT, "Odbc.DataSource");
    add("oledb", Form.TEXT, "OleDb.DataSource");
    add("odbc", Form.QUERY, "Odbc.Query");
    add("oledb", Form.QUERY, "OleDb.Query");
    add("onelake", Form.WORKSPACE, "Fabric.Warehouse", "Lakehouse.Contents");
    add("dataflow", Form.WORKSPACE, "PowerBI.Dataflows", "PowerPlatform.Dataflows");
    add("file", Form.FILE, "File.Contents");
    add("web", Form.FILE, "Web.Contents", "Web.BrowserContents");
    add("wasbs", Form.FILE, "AzureStorage.BlobContents");
    add("abfss", Form.FILE, "AzureStorage.DataLakeContents");
    add("file", Form.FOLDER, "Folder.Files", "Folder.Contents");
    add("sharepoint", Form.FOLDER, "SharePoint.Files", "SharePoint.Contents", "SharePoint.Tables");
    add("wasbs", Form.FOLDER, "AzureStorage.Blobs", "HdInsight.Containers", "HdInsight.Contents",
        "HdInsight.Files");
    add("abfss", Form.FOLDER, "AzureStorage.DataLake");
    add("hdfs", Form.FOLDER, "Hdfs.Files", "Hdfs.Contents");
  }

  private SourceFunctions() {}

  /** Whether a name is one of a value or function of the language that reads nothing. */
  static boolean isLibrary(String name) {
    int dot = name.indexOf('.');
    return name.startsWith("#") || dot > 0 && LIBRARY.contains(name.substring(0, dot));
  }

  /** Null for a function that opens nothing. Of one that is not listed the kind is its first word. */
  static Opening find(String function) {
    Opening known = OPENINGS.get(function);
    int dot = function.indexOf('.');
    if (known != null || dot < 1 || LIBRARY.contains(function.substring(0, dot))) return known;
    String kind = function.substring(0, dot).toLowerCase(Locale.ROOT);
    String end = function.substring(dot + 1);
    if (end.equals("Database")) return new Opening(kind, Form.DATABASE);
    if (end.equals("Databases")) return new Opening(kind, Form.SERVER);
    return ENDS.contains(end) ? new Opening(kind, Form.SERVICE) : null;
  }

  /** The kind of a structured data source; the protocol itself where it is none of these. */
  private static final Map<String, Opening> PROTOCOLS = Map.ofEntries(
      Map.entry("tds", new Opening("", Form.DATABASE)),
      Map.entry("oracle", new Opening("oracle", Form.DATABASE)),
      Map.entry("postgresql", new Opening("postgres", Form.DATABASE)),
      Map.entry("mysql", new Opening("mysql", Form.DATABASE)),
      Map.entry("teradata", new Opening("teradata", Form.DATABASE)),
      Map.entry("db2", new Opening("db2", Form.DATABASE)),
      Map.entry("sap-hana-sql", new Opening("saphana", Form.DATABASE)),
      Map.entry("analysis-services", new Opening("ssas", Form.DATABASE)),
      Map.entry("odbc", new Opening("odbc", Form.TEXT)), Map.entry("oledb", new Opening("oledb", Form.TEXT)),
      Map.entry("ole-db", new Opening("oledb", Form.TEXT)),
      Map.entry("odata", new Opening("odata", Form.SERVER)),
      Map.entry("file", new Opening("file", Form.FILE)), Map.entry("http", new Opening("web", Form.FILE)),
      Map.entry("folder", new Opening("file", Form.FOLDER)),
      Map.entry("sharepoint-list", new Opening("sharepoint", Form.FOLDER)),
      Map.entry("sharepoint-folder", new Opening("sharepoint", Form.FOLDER)),
      Map.entry("azure-blobs", new Opening("wasbs", Form.FOLDER)),
      Map.entry("azure-data-lake-storage", new Opening("abfss", Form.FOLDER)),
      Map.entry("webhdfs", new Opening("hdfs", Form.FOLDER)),
      Map.entry("salesforce-com", new Opening("salesforce", Form.SERVER)));

  public static Opening ofProtocol(String protocol) {
    int version = protocol.startsWith("db2-") ? protocol.indexOf('-') : protocol.length();
    Opening known = PROTOCOLS.get(protocol.substring(0, version));
    return known != null ? known : new Opening(protocol, Form.DATABASE);
  }
}
