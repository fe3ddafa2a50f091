package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;
import java.util.Set;

/** Files: how their paths are put together, and what functions make of their content. */
final class MFiles {
  private static final String COMPUTED = "takes a path or address that is computed";

  private MFiles() {}

  /** Web.Contents(url, [RelativePath=..., Query=[...]]) and functions of one path. */
  static MValue open(MCall call, SourceFunctions.Opening opening) {
    MValue options = call.argument(1);
    String address = call.text(0);
    MSource source = MSource.opened(call.name, opening, address, "");
    if (address == null) return MValue.source(source.blamed(call.fault(COMPUTED)));
    boolean relative = options.fields.containsKey("RelativePath");
    String path = options.fieldText("RelativePath");
    // What is asked for below the address may be computed; then all of it is meant.
    if (relative && path == null) return MValue.source(MPaths.folderOf(source));
    if (relative) source = source.withServer(MPaths.join(address, path));
    MValue query = options.fields.get("Query");
    if (query == null) return MValue.source(source);
    StringBuilder text = new StringBuilder(source.address().server());
    for (String name : query.fields.keySet()) {
      if (query.fieldText(name) == null) continue;
      text.append(text.indexOf("?") < 0 ? '?' : '&').append(name).append('=').append(query.fieldText(name));
    }
    return MValue.source(source.withServer(text.toString()));
  }

  static MValue openFolder(MCall call, SourceFunctions.Opening opening) {
    MSource source = MSource.opened(call.name, opening, call.text(0), "");
    if (call.text(0) == null) source = source.blamed(call.fault(COMPUTED));
    return MValue.source(source);
  }

  /** Csv.Document(file) and the like: the columns are the file's, by the names that it gives them. */
  static MValue document(MCall call) {
    MSource source = call.argument(0).source;
    if (source == null || !source.isFile()) return null;
    Relation file = MPaths.content(call.evaluator, source, call.name);
    boolean tables = call.name.equals("Xml.Tables") && source.address().server() != null;
    return MValue.table(tables ? withTables(call.evaluator, file) : file);
  }

  /** XML of several elements is a list of tables, of which steps pick one: all of them are the file. */
  private static Relation withTables(MEvaluation evaluator, Relation file) {
    Relation list = Relation.over(file);
    MValue table = MValue.table(file);
    list.put("Table", new Relation.Output("Table", evaluator.union(List.of(table)), table));
    return list;
  }

  /** Json.Document(file): records and lists, whose fields are the file's. */
  static MValue fields(MCall call) {
    MSource source = call.argument(0).source;
    if (source == null || !source.isFile()) return null;
    return MValue.row(MPaths.content(call.evaluator, source, call.name));
  }

  /** What a file holds as a list of records, which some functions take rows from. */
  static MCall withRows(MCall call) {
    MValue file = call.argument(0);
    if (!file.is(MValue.Kind.RECORD) || file.relation == null || !file.fields.isEmpty()) return call;
    return call.withFirst(MValue.repeated(file));
  }

  static MValue lines(MCall call) {
    MSource source = call.argument(0).source;
    if (source == null || !source.isFile()) return null;
    Relation content = MPaths.content(call.evaluator, source, call.name);
    Origin.Table file = content.origin().onlyTable();
    if (file == null) return MValue.table(content);
    return MValue.repeated(MValue.of(Set.of(new Origin.Column(file, "Column1")), Origin.of(file)));
  }

  /** Excel.Workbook(file) and the like: steps pick a sheet or table in it. */
  static MValue workbook(MCall call) {
    MSource source = call.argument(0).source;
    if (source == null || !source.isFile()) return null;
    return MValue.source(source.readBy(call.name).as(SourceFunctions.Form.DATABASE));
  }

  /** Functions that pass on what they are given. */
  static MValue same(MCall call) { return call.argument(0).is(MValue.Kind.SOURCE) ? call.argument(0) : null; }

  /** Names that stand in a file are its own: a column that no step has made is the file's of that name. */
  static MValue promoteHeaders(MCall call) {
    Relation from = call.table(0);
    Origin.Table file = from == null || !from.isPlain() ? null : from.origin().onlyTable();
    if (file == null || file.isQuery() || !call.evaluator.context().isFile(file.connection()))
      return call.unknownColumns("takes names of columns from the rows");
    Relation named = Relation.ofTable(file);
    return MValue.table(from.fault() == null ? named : named.blame(from.fault()));
  }

  /**
   * Cube.Transform(cube, {{function, "[Date]", {"[Date].[Month].[Month]"}, {"Month"}}, {function, "Sales",
   * "[Measures].[Sales]"}}).
   */
  static MValue transformCube(MCall call) {
    Origin.Table owner = cubeOf(call);
    if (owner == null || !call.argument(1).isWholeList()) return null;
    Relation relation = Relation.opaque(List.of(), owner.connection());
    for (MValue step : call.argument(1).items) {
      if (!step.isWholeList() || step.items.size() < 3) continue;
      String name = step.items.get(1).constantText();
      List<String> levels = MCall.texts(step.items.get(2));
      if (name == null || levels == null) continue;
      List<String> names = step.items.size() > 3 ? MCall.texts(step.items.get(3)) : List.of(name);
      for (int i = 0; names != null && i < levels.size() && i < names.size(); ++i)
        relation.put(names.get(i), Set.of(columnOf(owner, levels.get(i))));
    }
    return MValue.table(relation);
  }

  private static Origin.Table cubeOf(MCall call) {
    MSource source = call.argument(0).source;
    Relation cube = source == null
        ? call.table(0)
        : source.withSchema("").table(call.evaluator.context(), "", source.schema());
    return cube == null ? null : cube.origin().onlyTable();
  }

  /** [Measures].[Sales] is a column of the cube, [Date].[Month].[Month] one of a dimension. */
  private static Origin.Column columnOf(Origin.Table cube, String path) {
    String[] parts = path.replaceAll("^\\[|\\]$", "").split("\\]\\.\\[");
    String last = parts[parts.length - 1];
    if (parts[0].equals("Measures")) return new Origin.Column(cube, last);
    return new Origin.Column(Origin.Table.named(cube.connection(), "Dimensions", parts[0]), last);
  }
}
