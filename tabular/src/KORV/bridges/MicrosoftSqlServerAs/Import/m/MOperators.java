package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** What operators make of constants, tables, lists and records. */
final class MOperators {
  /** A text gets no longer, however often it is put together with itself. */
  private static final int MOST_CHARACTERS = 1 << 22;
  private static final int CHARACTERS_A_STEP = 64;

  private MOperators() {}

  /** Null where the result is only known to be made of both. */
  static MValue apply(MEvaluation evaluator, String operator, MValue left, MValue right, int at) {
    return switch (operator) {
      case "&" -> join(evaluator, List.of(left, right), at);
      case "meta", "as" -> left;
      case "is" -> MValue.UNKNOWN;
      case "??" -> evaluator.either(List.of(left, right), List.of());
      case "=" -> left.isConstant() && right.isConstant() ? MValue.logical(same(left, right)) : null;
      case "<>" -> left.isConstant() && right.isConstant() ? MValue.logical(!same(left, right)) : null;
      case "and" -> decided(left, right, "false");
      case "or" -> decided(left, right, "true");
      default -> null;
    };
  }

  /** `not`, or another operator before one value. */
  static MValue single(MEvaluation evaluator, String operator, MValue value) {
    boolean logical = operator.equals("not") && value.is(MValue.Kind.LOGICAL);
    return logical ? MValue.logical(value.text.equals("false")) : evaluator.mixed(List.of(value));
  }

  static boolean same(MValue left, MValue right) {
    return left == right || left.isConstant() && left.kind == right.kind && left.text.equals(right.text);
  }

  /** A logical operator that one of the values decides alone. */
  private static MValue decided(MValue left, MValue right, String deciding) {
    if (!left.is(MValue.Kind.LOGICAL)) return null;
    return left.text.equals(deciding) ? left : right;
  }

  /**
   * All at once, because texts and lists that are put together piece by piece cost their length for each
   * piece.
   */
  static MValue join(MEvaluation evaluator, List<MValue> values, int at) {
    if (values.stream().allMatch(value -> value.is(MValue.Kind.TEXT))) return texts(evaluator, values);
    MValue all = values.get(0);
    for (MValue next : values.subList(1, values.size())) {
      all = join(evaluator, all, next, at);
      if (all == null) return evaluator.mixed(values);
    }
    return all;
  }

  /** Null where a text gets longer than any query is. */
  private static MValue texts(MEvaluation evaluator, List<MValue> values) {
    StringBuilder text = new StringBuilder();
    for (MValue value : values) {
      if (text.length() + value.text.length() > MOST_CHARACTERS) return MValue.UNKNOWN;
      text.append(value.text);
    }
    return evaluator.budget().take(text.length() / CHARACTERS_A_STEP) ? MValue.text(text.toString())
                                                                      : MValue.UNKNOWN;
  }

  private static MValue join(MEvaluation evaluator, MValue left, MValue right, int at) {
    if (left.is(MValue.Kind.TABLE) || right.is(MValue.Kind.TABLE)) return append(evaluator, left, right, at);
    if (left.kind != right.kind) return null;
    return switch (left.kind) {
      case TEXT -> texts(evaluator, List.of(left, right));
      case LIST -> lists(evaluator, left, right);
      case RECORD -> records(evaluator, left, right);
      default -> null;
    };
  }

  /** The whole numbers from one to another, null when those are not known or too many. */
  static List<MValue> range(MValue first, MValue last, Budget budget) {
    if (!isSmall(first) || !isSmall(last)) return null;
    List<MValue> numbers = new ArrayList<>();
    for (int n = Integer.parseInt(first.text); n <= Integer.parseInt(last.text) && budget.take(1); ++n)
      numbers.add(MValue.number(Integer.toString(n)));
    return numbers;
  }

  private static boolean isSmall(MValue value) {
    return value.is(MValue.Kind.NUMBER) && value.text.matches("[0-9]{1,4}");
  }

  /** Rows of an unknown table have columns of the known one too, and may have others. */
  private static MValue append(MEvaluation evaluator, MValue left, MValue right, int at) {
    if (left.is(MValue.Kind.TABLE) && right.is(MValue.Kind.TABLE))
      return MValue.table(Relation.append(List.of(left.relation, right.relation)));
    Relation relation = Relation.computedFrom(left.is(MValue.Kind.TABLE) ? left.relation : right.relation);
    return MValue.table(relation.blame(evaluator.fault("a table that '&' appends is not known", at)));
  }

  private static MValue lists(MEvaluation evaluator, MValue left, MValue right) {
    if (left.repeated || right.repeated) return null;
    int size = left.items.size() + right.items.size();
    // Long lists that are put together piece by piece would cost their length for each piece.
    if (!evaluator.budget().take(size)) return null;
    List<MValue> items = new ArrayList<>(size);
    items.addAll(left.items);
    items.addAll(right.items);
    return MValue.list(items);
  }

  private static MValue records(MEvaluation evaluator, MValue left, MValue right) {
    if (right.relation != null || !evaluator.budget().take(left.fields.size())) return null;
    Map<String, MValue> fields = new LinkedHashMap<>(left.fields);
    fields.putAll(right.fields);
    MValue record = MValue.record(fields);
    record.relation = left.relation;
    return record;
  }
}
