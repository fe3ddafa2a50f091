package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;

/** Steps into folders, sites and accounts, and the tables that the files in them are. */
final class MPaths {
  private static final String WHOLE_FOLDER = "*";

  private MPaths() {}

  static MSource folderOf(MSource source) {
    return source.as(SourceFunctions.Form.FILE).withSchema(WHOLE_FOLDER);
  }

  static String join(String folder, String name) {
    if (folder.isEmpty()) return name;
    boolean separated = folder.endsWith("/") || folder.endsWith("\\") || name.startsWith("/");
    String separator = folder.contains("\\") && !folder.contains("/") ? "\\" : "/";
    if (folder.endsWith("/") && name.startsWith("/")) return folder + name.substring(1);
    return folder + (separated ? "" : separator) + name;
  }

  /** A step into a folder, site or account: a folder, list or file, whose content is not read yet. */
  static MValue item(MEvaluation evaluator, MSource source, MValue key) {
    String item = key.fieldText("Item");
    if (item != null) return tableOfLake(evaluator, source, key.fieldText("Schema"), item);
    String list = key.fieldText("Title") != null ? key.fieldText("Title") : key.fieldText("Id");
    if (list != null) return MValue.listed(source.table(evaluator.context(), source.schema(), list));
    String name = key.fieldText("Name");
    String folder = key.fieldText("Folder Path");
    if (folder == null) folder = key.fieldText("FolderPath");
    if (name == null) return MValue.source(folderOf(source));
    if (folder == null && isAccount(source))
      return MValue.source(source.withServer(join(server(source), name)));
    String path = folder == null ? source.schema() : below(source.address().server(), folder);
    return MValue.source(source.withSchema(join(path, name)));
  }

  private static String server(MSource source) { return source.address().server(); }

  /** Whether a source is a whole storage account, whose first step picks a container. */
  private static boolean isAccount(MSource source) {
    if (server(source) == null || !source.schema().isEmpty()) return false;
    boolean storage = source.address().kind().equals("wasbs") || source.address().kind().equals("abfss");
    return storage && !server(source).replaceAll("^[A-Za-z]+://|/+$", "").matches(".*[/@].*");
  }

  /** A table of a lake is found by schema and item, as Direct Lake reads it. */
  private static MValue tableOfLake(MEvaluation evaluator, MSource source, String schema, String item) {
    MSource lake = source.address().kind().equals("abfss") ? source.ofKind("onelake") : source;
    return MValue.listed(lake.table(evaluator.context(), schema == null ? "" : schema, item));
  }

  /** The part of a folder's path that stands behind the root of its source. */
  private static String below(String root, String folder) {
    String start = root.replaceAll("[/\\\\]+$", "");
    String path = folder.replaceAll("[/\\\\]+$", "");
    if (!path.regionMatches(true, 0, start, 0, start.length())) return path;
    return path.substring(start.length()).replaceAll("^[/\\\\]+", "");
  }

  private static int lastSeparator(String path) {
    return Math.max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
  }

  /** The table that a file is; of a path that is computed no more is known than that something is read. */
  static Relation content(MEvaluation evaluator, MSource source, String function) {
    MSource read = source.readBy(function);
    if (source.address().server() == null)
      return evaluator.unknownTable(List.of(MValue.source(source)), source.fault()).relation;
    if (source.schema().equals(WHOLE_FOLDER)) return read.table(evaluator.context(), "", WHOLE_FOLDER);
    if (!source.schema().isEmpty()) {
      int end = lastSeparator(source.schema());
      String folder = end < 0 ? "" : source.schema().substring(0, end);
      return read.table(evaluator.context(), folder, source.schema().substring(end + 1));
    }
    if (source.form() == SourceFunctions.Form.FOLDER)
      return read.table(evaluator.context(), "", WHOLE_FOLDER);
    String path = source.address().server();
    int query = path.indexOf('?') < 0 ? path.length() : path.indexOf('?');
    int end = lastSeparator(path.substring(0, query));
    boolean isHost = end > 0 && path.charAt(end - 1) == '/';
    if (isHost) return read.table(evaluator.context(), "", path.substring(end + 1));
    if (end < 0) return read.withServer(".").table(evaluator.context(), "", path);
    String folder = path.substring(0, end == 0 || path.charAt(end - 1) == ':' ? end + 1 : end);
    return read.withServer(folder).table(evaluator.context(), "", path.substring(end + 1));
  }

  /** The rows of a source that is a table itself: a list of files, or a feed; null for others. */
  static Relation rows(MEvaluation evaluator, MSource source) {
    if (source.form() == SourceFunctions.Form.FOLDER) {
      Relation files = Relation.over(source.table(evaluator.context(), source.schema(), WHOLE_FOLDER));
      MValue content = MValue.source(folderOf(source));
      files.put("Content", new Relation.Output("Content", evaluator.union(List.of(content)), content));
      return files;
    }
    boolean feed = source.address().kind().equals("odata") && source.address().server() != null;
    return feed ? content(evaluator, source.as(SourceFunctions.Form.FILE), source.function()) : null;
  }
}
