package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.HashMap;
import java.util.Map;
import java.util.function.Predicate;

/** The names that an expression can use, each with its value or with the part of the tree that gives it. */
final class MScope {
  /** Who gives a part of the tree its value. */
  interface Evaluation {
    MValue evaluate(MNode node, MScope scope);
  }

  private final MScope outer;
  /** A name that means what it means further outside: a step or field that is just being evaluated. */
  private final String excluded;
  private final Map<String, Object> values = new HashMap<>(4);

  private MScope(MScope outer, String excluded) {
    this.outer = outer;
    this.excluded = excluded;
  }

  static MScope inside(MScope outer) { return new MScope(outer, null); }

  /** The same names for the value of one of them: in `let T = T in …` the second T is another one. */
  MScope forValueOf(String name) { return new MScope(this, name); }

  void set(String name, MValue value) { values.put(name, value); }

  /** A value that is evaluated when it is asked for. */
  void defer(String name, MNode node) { values.put(name, node); }

  /** The value of a name, null when there is none; with `own` also that in whose value the name stands. */
  MValue find(String name, boolean own, Evaluation evaluation) {
    for (MScope at = this; at != null; at = at.outer) {
      if (!own && name.equals(at.excluded)) {
        at = at.outer;
        continue;
      }
      Object known = at.values.get(name);
      if (known instanceof MValue value) return value;
      if (!(known instanceof MNode node)) continue;
      at.values.put(name, MValue.UNKNOWN);
      MValue value = evaluation.evaluate(node, at.forValueOf(name));
      at.values.put(name, value);
      return value;
    }
    return null;
  }

  /** The innermost row that can be meant, or null. */
  MValue rowWith(Predicate<MValue> canBe) {
    for (MScope at = this; at != null; at = at.outer) {
      if (at.values.get("_") instanceof MValue row && canBe.test(row)) return row;
    }
    return null;
  }
}
