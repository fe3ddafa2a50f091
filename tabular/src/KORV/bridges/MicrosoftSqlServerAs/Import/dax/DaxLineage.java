package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.model.Labels;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Collections;
import java.util.Deque;
import java.util.IdentityHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;

/** What an expression leads to, each once and in the order of the text. */
public final class DaxLineage {
  /** What an expression names: a feature or table of the model, rows, or what another value comes from. */
  record Entry(Kind kind, ModelObject object, Sources sources) {
    enum Kind { FEATURE, TABLE, VALUE, COUNTED, ITERATED }
  }

  /** The two columns of USERELATIONSHIP or CROSSFILTER. */
  public record Join(ModelObject from, ModelObject to) {}

  public final Set<ModelObject> features = new LinkedHashSet<>();
  public final Set<ModelObject> classifiers = new LinkedHashSet<>();
  /** The tables that are named themselves, not only in front of a column. */
  public final Set<ModelObject> tables = new LinkedHashSet<>();
  /** The tables of which a value is the number of rows. */
  public final Set<ModelObject> counted = new LinkedHashSet<>();
  public final Set<String> unresolved = new LinkedHashSet<>();
  /** What cannot be read or is not known, with line and column. */
  public final Set<String> faults = new LinkedHashSet<>();
  /** The functions of the model that it calls, and the calendars that it names. */
  public final Set<String> functions = new LinkedHashSet<>();
  public final Set<String> calendars = new LinkedHashSet<>();
  /** What it calls that is no function of the language or the model. */
  public final Set<String> unknownFunctions = new LinkedHashSet<>();
  /** The columns by which it chooses relationships. */
  public final Set<Join> joins = new LinkedHashSet<>();
  /** Whether a value is that of one column, or of one column or another, as it is. */
  public boolean taken;
  private final Set<ModelObject> iterated = new LinkedHashSet<>();

  DaxLineage() {}

  public static DaxLineage empty() { return new DaxLineage(); }

  /** SUMX ( T, 1 ) counts rows as well, where nothing else can give a value. */
  void countIterated() {
    if (features.isEmpty() && counted.isEmpty() && unresolved.isEmpty()) counted.addAll(iterated);
  }

  /** Of a column that is not there. */
  static DaxLineage unresolved(DaxNode name) {
    DaxLineage lineage = new DaxLineage();
    lineage.unresolved.add(name.written());
    return lineage;
  }

  public void add(DaxLineage other) {
    features.addAll(other.features);
    classifiers.addAll(other.classifiers);
    tables.addAll(other.tables);
    counted.addAll(other.counted);
    unresolved.addAll(other.unresolved);
    addCalls(other);
  }

  void addCalls(DaxLineage other) {
    functions.addAll(other.functions);
    calendars.addAll(other.calendars);
    unknownFunctions.addAll(other.unknownFunctions);
    joins.addAll(other.joins);
  }

  /** Whether there is something that only details tell of. */
  public boolean hasCalls() {
    return !(functions.isEmpty() && calendars.isEmpty() && unknownFunctions.isEmpty() && joins.isEmpty());
  }

  /** The tables that are named, or whose columns are; not those that measures belong to. */
  public List<ModelObject> sourceTables() {
    return classifiers.stream().filter(one -> Labels.DIMENSION.equals(one.get("nativeType"))).toList();
  }

  /** All that `log` names. */
  static DaxLineage of(List<Entry> log) {
    DaxLineage lineage = new DaxLineage();
    // What a variable or made column comes from stands in the log itself, but for objects taken over.
    lineage.collect(Sources.range(0, log.size()), log, false);
    return lineage;
  }

  static DaxLineage of(Sources sources, List<Entry> log) {
    DaxLineage lineage = new DaxLineage();
    lineage.collect(sources, log, true);
    boolean united = !sources.parts().isEmpty() && sources.parts().stream().allMatch(p -> p.object() != null);
    lineage.taken = sources.object() != null || united;
    return lineage;
  }

  private void collect(Sources start, List<Entry> log, boolean ranges) {
    Set<Sources> entered = Collections.newSetFromMap(new IdentityHashMap<>());
    Deque<Entry> waiting = new ArrayDeque<>();
    pushRange(start, log, waiting);
    pushParts(start, waiting);
    if (start.object() != null) add(start.object());
    while (!waiting.isEmpty()) {
      Entry entry = waiting.pop();
      switch (entry.kind) {
        case FEATURE -> add(entry.object);
        case TABLE -> {
          classifiers.add(entry.object);
          tables.add(entry.object);
        }
        case COUNTED -> addRows(entry.sources, counted);
        case ITERATED -> addRows(entry.sources, iterated);
        default -> {
          if (!entered.add(entry.sources)) continue;
          if (entry.sources.object() != null) add(entry.sources.object());
          pushParts(entry.sources, waiting);
          if (ranges) pushRange(entry.sources, log, waiting);
        }
      }
    }
  }

  private void add(ModelObject feature) {
    features.add(feature);
    classifiers.add(feature.owner);
  }

  private static void pushRange(Sources sources, List<Entry> log, Deque<Entry> waiting) {
    for (int i = sources.end(); i-- > sources.begin();) waiting.push(log.get(i));
  }

  private static void pushParts(Sources sources, Deque<Entry> waiting) {
    for (int i = sources.parts().size(); i-- > 0;)
      waiting.push(new Entry(Entry.Kind.VALUE, null, sources.parts().get(i)));
  }

  private static void addRows(Sources rows, Set<ModelObject> found) {
    Set<Sources> entered = Collections.newSetFromMap(new IdentityHashMap<>());
    List<Sources> waiting = new ArrayList<>(List.of(rows));
    for (int i = 0; i < waiting.size(); ++i) {
      if (!entered.add(waiting.get(i))) continue;
      if (waiting.get(i).object() != null) found.add(waiting.get(i).object());
      waiting.addAll(waiting.get(i).parts());
    }
  }
}
