package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import java.util.HashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;

/**
 * What is known of the functions of DAX, as data: what each gives, and how each of its arguments is
 * evaluated.
 *
 * <p>A letter stands for an argument; the letters behind ":" are for all that follow, by turns.
 * <pre>
 *   .  a value or table, where the call stands
 *   c  a column, before a measure of its name
 *   T  a table whose rows the arguments r are evaluated in
 *   t  a table
 *   r  a value, in the rows of the tables T before it
 *   n  the name of a column that the next argument makes; without a name, a column that keeps its own
 *   m  the name of a column that is made of nothing, or a column that keeps its own
 *   k  a word of the language, such as MONTH or DESC, or a value
 *   x  a word that means something where the query is put together, or a parameter
 * </pre>
 */
final class DaxFunctions {
  /** What a function gives. */
  enum Result {
    VALUE,
    /** A value of the rows of its first table. */
    AGGREGATE,
    /** The number of rows of its table. */
    COUNT,
    /** A value that another row has. */
    EARLIER,
    /** The rows being grouped. */
    GROUP,
    /** Its first table. */
    SAME,
    /** The columns that are named, or the table. */
    COLUMNS,
    /** The first table, and the columns that are made. */
    ADD,
    /** The columns that are named or made. */
    MADE,
    /** The columns of the tables side by side. */
    JOIN,
    UNION,
    /** One column of a fixed name. */
    DATE,
    SERIES,
    /** The names and types of columns, then the rows. */
    DATA,
    /** The columns of a first table under the names of those that follow. */
    TREAT,
    UNKNOWN_TABLE
  }

  record Function(Result result, String first, String rest) {
    char argument(int place) {
      if (place < first.length()) return first.charAt(place);
      return rest.isEmpty() ? '.' : rest.charAt((place - first.length()) % rest.length());
    }
  }

  private static final List<String> LINES = List.of(
      "VALUE .: ABS ACOS ACOSH ACOT ACOTH AND ASIN ASINH ATAN ATANH BETA.DIST BETA.INV BITAND BITLSHIFT",
      "VALUE .: BITOR BITRSHIFT BITXOR BLANK CEILING CHISQ.DIST CHISQ.DIST.RT CHISQ.INV CHISQ.INV.RT",
      "VALUE .: COALESCE COMBIN COMBINA COMBINEVALUES CONCATENATE CONFIDENCE.NORM CONFIDENCE.T COS COSH",
      "VALUE .: COT COTH CUSTOMDATA CURRENCY DATE DATEVALUE DAY DEGREES DIVIDE EDATE EOMONTH ERROR EVEN",
      "VALUE .: EXACT EXP EXPON.DIST FACT FALSE FIND FIXED FLOOR FORMAT GCD HASH HOUR IF IF.EAGER IFERROR",
      "VALUE .: INT ISBLANK ISEMPTY ISERROR ISEVEN ISLOGICAL ISNONTEXT ISNUMBER ISO.CEILING ISODD ISSTRING",
      "VALUE .: ISTEXT ISBOOLEAN ISDATETIME ISDECIMAL ISDOUBLE ISINT64 ISINTEGER ISNUMERIC ISCURRENCY",
      "VALUE .: KEYWORDMATCH LCM LEFT LEN LN LOG LOG10 LOWER MID MINUTE MOD MONTH MROUND NETWORKDAYS",
      "VALUE .: NORM.DIST NORM.INV NORM.S.DIST NORM.S.INV NOT NOW ODD OR PATHCONTAINS PATHLENGTH PERMUT PI",
      "VALUE .: POISSON.DIST POWER QUARTER QUOTIENT RADIANS RAND RANDBETWEEN REPLACE REPT RIGHT ROUND",
      "VALUE .: ROUNDDOWN ROUNDUP SEARCH SECOND SELECTEDMEASURE SELECTEDMEASUREFORMATSTRING",
      "VALUE .: SELECTEDMEASURENAME ISSELECTEDMEASURE SIGN SIN SINH SQRT SQRTPI SUBSTITUTE SWITCH T.DIST",
      "VALUE .: T.DIST.2T T.DIST.RT T.INV T.INV.2T TAN TANH TIME TIMEVALUE TODAY TRIM TRUE TRUNC UNICHAR",
      "VALUE .: UNICODE UPPER USERCULTURE USERNAME USEROBJECTID USERPRINCIPALNAME UTCNOW UTCTODAY VALUE",
      "VALUE .: WEEKDAY WEEKNUM YEAR CALCULATE CONTAINSROW CONTAINSSTRING CONTAINSSTRINGEXACT",
      "VALUE .: ROLLUPISSUBTOTAL PARTITIONBY MATCHBY TOCSV TOJSON NAMEOF ACCRINT ACCRINTM",
      "VALUE .: AMORDEGRC AMORLINC COUPDAYBS COUPDAYS COUPDAYSNC COUPNCD COUPNUM COUPPCD CUMIPMT CUMPRINC",
      "VALUE .: DB DDB DISC DOLLARDE DOLLARFR DURATION EFFECT FV INTRATE IPMT ISPMT MDURATION NOMINAL NPER",
      "VALUE .: ODDFPRICE ODDFYIELD ODDLPRICE ODDLYIELD PDURATION PMT PPMT PRICE PRICEDISC PRICEMAT PV",
      "VALUE .: RATE RECEIVED RRI SLN SYD TBILLEQ TBILLPRICE TBILLYIELD VDB YIELD YIELDDISC YIELDMAT",
      "VALUE .: ISATLEVEL CALCULATIONGROUPRESETSELECTION",
      "VALUE c: SUM AVERAGE MIN MAX COUNT COUNTA COUNTBLANK DISTINCTCOUNT DISTINCTCOUNTNOBLANK PRODUCT",
      "VALUE c: AVERAGEA MINA MAXA MEDIAN GEOMEAN STDEV.S STDEV.P VAR.S VAR.P APPROXIMATEDISTINCTCOUNT",
      "VALUE c: HASONEVALUE HASONEFILTER ISFILTERED ISCROSSFILTERED ISINSCOPE ISSUBTOTAL USERELATIONSHIP",
      "VALUE c: PATH RELATED", "VALUE c. PERCENTILE.INC PERCENTILE.EXC SELECTEDVALUE", "VALUE .ck RANK.EQ",
      "VALUE cck CROSSFILTER", "VALUE c:c. LOOKUPVALUE",
      "VALUE ..k PATHITEM PATHITEMREVERSE DATEDIFF YEARFRAC", "VALUE .k CONVERT",
      "VALUE .:k EXTERNALMEASURE RUNNINGSUM MOVINGAVERAGE COLLAPSE COLLAPSEALL EXPAND EXPANDALL FIRST LAST",
      "VALUE .:k NEXT PREVIOUS RANGE LOOKUP LOOKUPWITHTOTALS", "VALUE :..k ISAFTER ISONORAFTER",
      "VALUE :.k ORDERBY", "VALUE kT:rkr RANK", "VALUE T:rkr ROWNUMBER",
      "VALUE .c. TOTALMTD TOTALQTD TOTALYTD TOTALWTD OPENINGBALANCEMONTH OPENINGBALANCEQUARTER",
      "VALUE .c. OPENINGBALANCEYEAR OPENINGBALANCEWEEK CLOSINGBALANCEMONTH CLOSINGBALANCEQUARTER",
      "VALUE .c. CLOSINGBALANCEYEAR CLOSINGBALANCEWEEK", "VALUE T:r. CONTAINS", "EARLIER . EARLIER EARLIEST",
      "COUNT t COUNTROWS",
      "AGGREGATE Tr SUMX AVERAGEX MINX MAXX COUNTX COUNTAX PRODUCTX MEDIANX GEOMEANX STDEVX.S STDEVX.P",
      "AGGREGATE Tr VARX.S VARX.P FIRSTNONBLANKVALUE LASTNONBLANKVALUE",
      "AGGREGATE Tr. PERCENTILEX.INC PERCENTILEX.EXC", "AGGREGATE Trr. XIRR XNPV",
      "AGGREGATE Tr.:rk CONCATENATEX", "AGGREGATE Tr.kk RANKX", "SAME Tr FILTER FIRSTNONBLANK LASTNONBLANK",
      "SAME t: RELATEDTABLE KEEPFILTERS INTERSECT EXCEPT", "SAME t:. CALCULATETABLE EVALUATEANDLOG NONVISUAL",
      "SAME t:c ALLEXCEPT", "SAME .T:rk TOPN SAMPLE", "SAME ..T:rk TOPNSKIP", "SAME .T:rkr INDEX OFFSET",
      "SAME .k.kT:rkr WINDOW",
      "SAME c: DATESMTD DATESQTD DATESWTD DATESYTD ENDOFMONTH ENDOFQUARTER ENDOFWEEK ENDOFYEAR FIRSTDATE",
      "SAME c: LASTDATE NEXTDAY NEXTMONTH NEXTQUARTER NEXTWEEK NEXTYEAR PREVIOUSDAY PREVIOUSMONTH",
      "SAME c: PREVIOUSQUARTER PREVIOUSWEEK PREVIOUSYEAR SAMEPERIODLASTYEAR STARTOFMONTH STARTOFQUARTER",
      "SAME c: STARTOFWEEK STARTOFYEAR", "SAME c..:k DATESINPERIOD", "SAME c.:k DATEADD PARALLELPERIOD",
      "SAME c.. DATESBETWEEN",
      "COLUMNS c: ALL ALLNOBLANKROW ALLSELECTED ALLCROSSFILTERED REMOVEFILTERS VALUES DISTINCT FILTERS",
      "COLUMNS c: ROLLUP ROLLUPGROUP", "ADD T:nr ADDCOLUMNS", "MADE T:nr SELECTCOLUMNS SUMMARIZE GROUPBY",
      "MADE :n SUMMARIZECOLUMNS ROW", "MADE :m ROLLUPADDISSUBTOTAL",
      "JOIN t: CROSSJOIN NATURALINNERJOIN NATURALLEFTOUTERJOIN", "JOIN Tr GENERATE GENERATEALL",
      "UNION t: UNION", "DATE .: CALENDAR CALENDARAUTO", "SERIES .: GENERATESERIES", "DATA :.k DATATABLE",
      "TREAT t:c TREATAS", "GROUP . CURRENTGROUP",
      "UNKNOWN_TABLE .: ADDMISSINGITEMS DETAILROWS IGNORE NONFILTER GROUPCROSSAPPLY GROUPCROSSAPPLYTABLE",
      "UNKNOWN_TABLE .: LINEST KMEANSCLUSTERING SAMPLEAXISWITHLOCALMINMAX SAMPLECARTESIANPOINTSBYCOVER",
      "UNKNOWN_TABLE .: SUBSTITUTEWITHINDEX TOPNPERLEVEL DEPENDON COLUMNSTATISTICS TABLEOF",
      "UNKNOWN_TABLE Trr LINESTX", "UNKNOWN_TABLE xxcx RSCUSTOMDAXFILTER");

  private static final Map<String, Function> ALL = read();

  private DaxFunctions() {}

  private static Map<String, Function> read() {
    Map<String, Function> functions = new HashMap<>();
    for (String line : LINES) {
      String[] words = line.split(" ");
      int colon = words[1].indexOf(':');
      String first = colon < 0 ? words[1] : words[1].substring(0, colon);
      String rest = colon < 0 ? "" : words[1].substring(colon + 1);
      // One letter before an empty rest goes on: "t:" is any number of tables.
      if (colon >= 0 && rest.isEmpty()) rest = first.substring(first.length() - 1);
      Function function = new Function(Result.valueOf(words[0]), first, rest);
      for (int i = 2; i < words.length; ++i) functions.put(words[i], function);
    }
    return functions;
  }

  static boolean choosesRelationship(String name) {
    return name.equalsIgnoreCase("USERELATIONSHIP") || name.equalsIgnoreCase("CROSSFILTER");
  }

  static boolean readsOtherModel(String name) { return name.equalsIgnoreCase("EXTERNALMEASURE"); }

  /** Null for a name that is no function of the language. */
  static Function find(String name) {
    String upper = name.toUpperCase(Locale.ROOT);
    Function found = ALL.get(upper);
    return found == null && upper.startsWith("INFO.") ? ALL.get("DETAILROWS") : found;
  }
}
