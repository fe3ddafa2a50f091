package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxResolver;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Labels;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Escapes;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.io.BufferedReader;
import java.io.IOException;
import java.io.InputStreamReader;
import java.io.UncheckedIOException;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.Map;

/**
 * Tells what DAX names of a model that is finished: queries, and measures that reports have of their own.
 *
 * <p>Two arguments: the option file, whose BP_FILE is the file to read, and the file to write. Lines are
 * fields with a tab between them. What is read, where everything before the first query is the model and is
 * known by the number that counts its lines:
 * <pre>
 *   table NAME
 *   column NAME            of the table before
 *   measure NAME
 *   function NAME TEXT
 *   report                 what follows is another report
 *   own NAME               a measure of the report, known by a number too
 *   query TABLE TEXT       TABLE is that in which a measure is listed, else empty
 * </pre>
 * What is written:
 * <pre>
 *   query                  one for each
 *   uses NUMBER
 *   counts NUMBER          a table by its rows
 *   takes NUMBER           a table for its rows
 *   calls NAME
 *   lacks NAME             as DAX writes it
 * </pre>
 */
public final class QueryNames {
  /** The names of a model, and before them the measures of a report. */
  private static final class ReportNames extends DaxResolver {
    final Map<String, ModelObject> own = new HashMap<>();

    @Override
    public ModelObject findMeasure(String name) {
      ModelObject found = own.get(Names.fold(name));
      return found == null ? super.findMeasure(name) : found;
    }
  }

  private static final String NUMBER = "number";

  private final ReportNames names = new ReportNames();
  private final ModelObject measures = new ModelObject("", "");
  private final Writer output;
  private DaxResolver.Table table;
  private int count;

  private QueryNames(Writer output) { this.output = output; }

  public static void main(String[] arguments) throws IOException {
    String input = MicrosoftSqlServerAsImport.readOptions(arguments[0]).get("BP_FILE");
    try (BufferedReader lines = reader(Path.of(input));
        Writer output = Files.newBufferedWriter(Path.of(arguments[1]), StandardCharsets.UTF_8)) {
      lines.lines().forEach(new QueryNames(output)::read);
    }
  }

  /** Of bytes that are no UTF-8 it makes something else, as whoever shows them does. */
  private static BufferedReader reader(Path path) throws IOException {
    return new BufferedReader(new InputStreamReader(Files.newInputStream(path), StandardCharsets.UTF_8));
  }

  private void read(String line) {
    String[] fields = line.split("\t", -1);
    for (int i = 1; i < fields.length; ++i) fields[i] = Escapes.unescape(fields[i]);
    switch (fields[0]) {
      case "table" -> table = names.addTable(fields[1], numbered(fields[1]).set("nativeType", Labels.DIMENSION));
      case "column" -> names.addColumn(table, fields[1], member(fields[1]));
      case "measure" -> names.addMeasure(fields[1], member(fields[1]));
      case "function" -> names.addFunction(fields[1], fields[2]);
      case "report" -> names.own.clear();
      case "own" -> names.own.putIfAbsent(Names.fold(fields[1]), member(fields[1]));
      default -> resolve(fields[1], fields[2]);
    }
  }

  private ModelObject numbered(String name) {
    return new ModelObject("", name).set(NUMBER, Integer.toString(++count));
  }

  private ModelObject member(String name) {
    ModelObject member = numbered(name);
    member.owner = measures;
    return member;
  }

  private void resolve(String home, String text) {
    DaxLineage lineage = names.resolveMeasure(text, home.isEmpty() ? null : names.findTable(home));
    write("query", "");
    for (ModelObject feature : lineage.features) write("uses", feature.get(NUMBER));
    for (ModelObject one : lineage.tables)
      write(lineage.counted.contains(one) ? "counts" : "takes", one.get(NUMBER));
    for (String name : lineage.functions) write("calls", name);
    for (String name : lineage.unresolved) write("lacks", name);
  }

  private void write(String what, String value) {
    try {
      output.write(what + "\t" + Escapes.escape(value) + "\n");
    } catch (IOException failure) {
      throw new UncheckedIOException(failure);
    }
  }
}
