package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;
import java.util.Set;

/**
 * Follows the steps of an M query from a database to the columns that it gives. A step that is not understood
 * ends in "unknown", never in a guess.
 */
public final class MQuery {
  /**
   * What a query reads; `relation` is null when it is no table that comes from a database. `fault` tells the
   * first step that is not understood, with line and column; null when all are. `inline` is set when the rows
   * stand in the query itself.
   */
  public record Reading(Relation relation, String fault, boolean inline) {}

  /** Reads the queries of one model. */
  public static final class Reader {
    private final MEvaluator evaluator;

    public Reader(MContext context) { evaluator = new MEvaluator(context); }

    public Reading read(String text) {
      if (text.isBlank()) return new Reading(null, null, false);
      try {
        MValue value = evaluator.evaluateQuery(text);
        if (evaluator.isComplete() || !value.is(MValue.Kind.TABLE)) return reading(value);
        MFault fault = evaluator.fault("the query takes too many steps to be followed", 0);
        return reading(evaluator.unknownTable(List.of(value), fault));
      } catch (MSyntaxFault fault) {
        return new Reading(null, new MFault(fault.getMessage(), "", text, fault.at).describe(), false);
      }
    }

    /** What a query opens and reads no table of; null where it is no such query. */
    public MSource source(String text) {
      try {
        return evaluator.evaluateQuery(text).source;
      } catch (MSyntaxFault fault) {
        return null;
      }
    }

    /** The names of a query that it does not define itself, each once; none where it cannot be read. */
    public Set<String> namesIn(String text) {
      try {
        return MNames.free(MParser.parse(text));
      } catch (MSyntaxFault fault) {
        return Set.of();
      }
    }

    private Reading reading(MValue value) {
      Relation relation =
          value.is(MValue.Kind.SOURCE) ? MPaths.rows(evaluator, value.source) : value.relation;
      if (relation == null || value.is(MValue.Kind.RECORD)) return new Reading(null, null, false);
      String fault = relation.fault() == null ? null : relation.fault().describe();
      // Without a database there is nothing that the columns could lead to.
      boolean read = !relation.connection().isEmpty();
      boolean inline = !read && !evaluator.isForeign();
      // What is entered is in the definition, whatever its columns are called.
      return new Reading(read ? relation : null, inline ? null : fault, inline);
    }
  }

  /** Whether a text ends where more must follow. */
  public static boolean endsEarly(String text) {
    try {
      MParser.parse(text);
      return false;
    } catch (MSyntaxFault fault) {
      return fault.early;
    }
  }

  private MQuery() {}
}
