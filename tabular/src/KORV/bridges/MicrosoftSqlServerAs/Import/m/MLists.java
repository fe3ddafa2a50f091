package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** Functions that make, cut and walk lists: exactly where all items are there, else item by item alike. */
final class MLists {
  /** After so many steps a list that is generated is taken to bring no further sources. */
  private static final int MOST_STEPS = 8;

  /** Cuts a part out of a list; a number is -1 where the argument is left out. */
  interface Part {
    List<MValue> of(List<MValue> items, int first, int second);
  }

  private MLists() {}

  /** A list of which some items may be missing. */
  static MValue someItems(MCall call) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST) || list.items.isEmpty()) return null;
    return alike(call, list, list.items);
  }

  /** A list of any number of items, each one of these. */
  private static MValue alike(MCall call, MValue list, List<MValue> items) {
    if (list.repeated) return list;
    return MValue.repeated(call.evaluator.either(items, List.of())).from(list.origin);
  }

  /** List.FirstN(list, count) and the like; `part` cuts a list of which all items are there. */
  static MValue part(MCall call, Part part) {
    MValue list = call.argument(0);
    int first = count(call, 1);
    int second = count(call, 2);
    boolean known = list.isWholeList() && first >= -1 && second >= -1;
    return known ? MValue.list(part.of(list.items, first, second)).from(list.origin) : someItems(call);
  }

  /** -1 for an argument that is left out, -2 for one that is not known. */
  private static int count(MCall call, int place) {
    if (!call.has(place)) return -1;
    MValue value = call.argument(place);
    boolean number = value.is(MValue.Kind.NUMBER) && value.text.matches("[0-9]{1,8}");
    return number ? Integer.parseInt(value.text) : -2;
  }

  static List<MValue> front(List<MValue> items, int count) {
    return items.subList(0, Math.min(items.size(), Math.abs(count)));
  }

  static List<MValue> behind(List<MValue> items, int count) {
    return items.subList(Math.min(items.size(), Math.abs(count)), items.size());
  }

  static List<MValue> back(List<MValue> items, int count) {
    return items.subList(Math.max(0, items.size() - Math.abs(count)), items.size());
  }

  static List<MValue> before(List<MValue> items, int count) {
    return items.subList(0, Math.max(0, items.size() - Math.abs(count)));
  }

  static List<MValue> range(List<MValue> items, int from, int count) {
    List<MValue> rest = behind(items, Math.max(0, from));
    return count < 0 ? rest : front(rest, count);
  }

  static List<MValue> reversed(List<MValue> items) {
    List<MValue> reversed = new ArrayList<>(items);
    Collections.reverse(reversed);
    return reversed;
  }

  static MValue end(MCall call, boolean first) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST) || list.items.isEmpty()) return null;
    return list.items.get(first ? 0 : list.items.size() - 1);
  }

  static MValue count(MCall call) {
    MValue list = call.argument(0);
    return list.isWholeList() ? MValue.number(Integer.toString(list.items.size())) : MValue.UNKNOWN;
  }

  static MValue transform(MCall call) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST)) {
      MValue item = call.evaluator.mixed(List.of(list));
      return MValue.repeated(call.apply(call.argument(1), item));
    }
    List<MValue> items = new ArrayList<>(list.items.size());
    for (MValue item : list.items) items.add(call.apply(call.argument(1), item));
    MValue made = MValue.list(items).from(list.origin);
    made.repeated = list.repeated;
    return made;
  }

  /** List.TransformMany(list, collection, result): an item for each pair of an item and one of its own. */
  static MValue transformMany(MCall call) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST)) return null;
    List<MValue> made = new ArrayList<>();
    boolean whole = !list.repeated;
    for (MValue item : list.items) {
      MValue own = call.apply(call.argument(1), item);
      whole &= own.isWholeList();
      List<MValue> items = own.is(MValue.Kind.LIST) ? own.items : List.of(call.evaluator.mixed(List.of(own)));
      if (!call.budget().take(1 + items.size())) return MValue.UNKNOWN;
      for (MValue one : items) made.add(call.apply(call.argument(2), item, one));
    }
    if (whole) return MValue.list(made).from(list.origin);
    return made.isEmpty() ? null : MValue.repeated(call.evaluator.either(made, List.of())).from(list.origin);
  }

  /** List.Select(list, condition): exactly where the condition is constant for each item. */
  static MValue select(MCall call) {
    MValue list = call.argument(0);
    List<MValue> kept = new ArrayList<>();
    for (MValue item : list.isWholeList() ? list.items : List.<MValue>of()) {
      MValue chosen = call.apply(call.argument(1), item);
      if (!chosen.is(MValue.Kind.LOGICAL)) return someItems(call);
      if (chosen.text.equals("true")) kept.add(item);
    }
    return list.isWholeList() ? MValue.list(kept).from(list.origin) : someItems(call);
  }

  static MValue contains(MCall call) {
    if (call.has(2) || !isConstant(call.argument(0)) || !call.argument(1).isConstant()) return null;
    return MValue.logical(keys(call.argument(0)).contains(key(call.argument(1))));
  }

  /** List.Accumulate(list, seed, function): step by step where the list is constant. */
  static MValue accumulate(MCall call) {
    MValue list = call.argument(0);
    MValue state = call.argument(1);
    if (!list.isWholeList()) {
      return state.is(MValue.Kind.TABLE) ? call.unknownColumns("goes through a list that is not known")
                                         : null;
    }
    for (MValue item : list.items) state = call.apply(call.argument(2), state, item);
    return state;
  }

  /** List.Generate(start, condition, next, item). */
  static MValue generate(MCall call) {
    MValue state = call.apply(call.argument(0));
    List<MValue> made = new ArrayList<>();
    Set<Origin.Column> sources = new HashSet<>();
    for (int i = 0; i < MOST_STEPS; ++i) {
      MValue item = call.has(3) ? call.apply(call.argument(3), state) : state;
      // A state of several fields hands its sources on from field to field, one with each step.
      boolean more = sources.addAll(call.evaluator.union(List.of(state)));
      made.add(item);
      if (!more && i > state.fields.size()) break;
      state = call.apply(call.argument(2), state);
    }
    return MValue.repeated(call.evaluator.either(made, List.of()));
  }

  /** List.Numbers(start, count, step). */
  static MValue numbers(MCall call) {
    int from = count(call, 0);
    int count = count(call, 1);
    int step = call.has(2) ? count(call, 2) : 1;
    if (from < 0 || count < 0 || step < 0 || !call.budget().take(count)) return null;
    List<MValue> numbers = new ArrayList<>();
    for (int i = 0; i < count; ++i) numbers.add(MValue.number(Long.toString(from + (long) i * step)));
    return MValue.list(numbers);
  }

  static MValue positions(MCall call) {
    MValue list = call.argument(0);
    if (!list.isWholeList() || !call.budget().take(list.items.size())) return null;
    List<MValue> places = new ArrayList<>();
    for (int i = 0; i < list.items.size(); ++i) places.add(MValue.number(Integer.toString(i)));
    return MValue.list(places);
  }

  static MValue repeat(MCall call) {
    MValue list = call.argument(0);
    int count = count(call, 1);
    if (!list.isWholeList() || count < 0 || !call.budget().take((long) count * list.items.size()))
      return someItems(call);
    List<MValue> items = new ArrayList<>();
    for (int i = 0; i < count; ++i) items.addAll(list.items);
    return MValue.list(items).from(list.origin);
  }

  static MValue combine(MCall call) {
    MValue lists = call.argument(0);
    if (!lists.is(MValue.Kind.LIST)) return null;
    List<MValue> items = new ArrayList<>();
    boolean whole = !lists.repeated;
    for (MValue list : lists.items) {
      if (!list.is(MValue.Kind.LIST) || !call.budget().take(list.items.size())) return null;
      whole &= list.isWholeList();
      items.addAll(list.items);
    }
    if (items.isEmpty() && !whole) return null;
    MValue made = whole ? MValue.list(items) : MValue.repeated(call.evaluator.either(items, List.of()));
    return made.from(call.evaluator.origin(lists.items));
  }

  /** List.Zip(lists): the shorter ones end in nulls. */
  static MValue zip(MCall call) {
    MValue lists = call.argument(0);
    if (!lists.isWholeList() || lists.items.stream().anyMatch(list -> !list.is(MValue.Kind.LIST)))
      return null;
    boolean whole = lists.items.stream().allMatch(MValue::isWholeList);
    int size = lists.items.stream().mapToInt(list -> list.items.size()).max().orElse(0);
    if (!call.budget().take((long) size * lists.items.size())) return null;
    List<MValue> rows = new ArrayList<>();
    for (int i = 0; i < (whole ? size : 1); ++i) {
      List<MValue> row = new ArrayList<>();
      for (MValue list : lists.items) row.add(whole ? at(list, i) : any(call, list));
      rows.add(MValue.list(row));
    }
    MValue made = whole ? MValue.list(rows) : MValue.repeated(rows.get(0));
    return made.from(call.evaluator.origin(lists.items));
  }

  private static MValue at(MValue list, int place) {
    return place < list.items.size() ? list.items.get(place) : MValue.NULL;
  }

  private static MValue any(MCall call, MValue list) {
    return list.items.isEmpty() ? MValue.NULL : call.evaluator.either(list.items, List.of());
  }

  /** List.InsertRange(list, place, items). */
  static MValue insertRange(MCall call) {
    MValue list = call.argument(0);
    MValue further = call.argument(2);
    int place = count(call, 1);
    if (!list.is(MValue.Kind.LIST) || !further.is(MValue.Kind.LIST)) return null;
    boolean whole = list.isWholeList() && further.isWholeList();
    List<MValue> items = new ArrayList<>(list.items);
    items.addAll(whole && place >= 0 ? Math.min(place, items.size()) : items.size(), further.items);
    if (whole && place >= 0) return MValue.list(items);
    if (items.isEmpty()) return null;
    MValue made = MValue.repeated(call.evaluator.either(items, List.of()));
    return made.from(call.evaluator.origin(List.of(list, further)));
  }

  /** List.ReplaceValue(list, old, new, replacer). */
  static MValue replaceValue(MCall call) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST)) return null;
    List<MValue> items = new ArrayList<>();
    for (MValue item : list.items)
      items.add(call.apply(call.argument(3), item, call.argument(1), call.argument(2)));
    MValue made = MValue.list(items).from(list.origin);
    made.repeated = list.repeated;
    return made;
  }

  /** List.Split(list, size): a list of lists. */
  static MValue split(MCall call) {
    MValue list = call.argument(0);
    int size = count(call, 1);
    if (!list.is(MValue.Kind.LIST)) return null;
    if (list.repeated || size < 1) return list.items.isEmpty() ? null : MValue.repeated(someItems(call));
    List<MValue> pages = new ArrayList<>();
    for (int i = 0; i < list.items.size(); i += size) pages.add(MValue.list(range(list.items, i, size)));
    return MValue.list(pages).from(list.origin);
  }

  private static boolean isConstant(MValue list) {
    return list.isWholeList() && list.items.stream().allMatch(MValue::isConstant);
  }

  private static String key(MValue constant) { return constant.kind + constant.text; }

  private static Set<String> keys(MValue list) {
    Set<String> keys = new HashSet<>();
    for (MValue item : list.items) keys.add(key(item));
    return keys;
  }

  static MValue distinct(MCall call) {
    if (call.has(1) || !isConstant(call.argument(0))) return someItems(call);
    Map<String, MValue> items = new LinkedHashMap<>();
    for (MValue item : call.argument(0).items) items.putIfAbsent(key(item), item);
    return MValue.list(new ArrayList<>(items.values()));
  }

  /** The items of the first list that are not in the second; `all` takes away each equal one. */
  static MValue difference(MCall call, boolean all) {
    MValue list = call.argument(0);
    MValue gone = call.argument(1);
    if (call.has(2) || !isConstant(list) || !isConstant(gone)) return someItems(call);
    Map<String, Integer> counts = new HashMap<>();
    for (MValue item : gone.items) counts.merge(key(item), all ? list.items.size() : 1, Integer::sum);
    List<MValue> left = new ArrayList<>();
    for (MValue item : list.items) {
      if (counts.merge(key(item), -1, Integer::sum) < 0) left.add(item);
    }
    return MValue.list(left);
  }

  /** List.Union(lists) and List.Intersect(lists), exactly where no list has an item twice. */
  static MValue ofSets(MCall call, boolean union) {
    MValue lists = call.argument(0);
    if (!lists.isWholeList() || lists.items.isEmpty()) return null;
    boolean exact = !call.has(1)
        && lists.items.stream().allMatch(list -> isConstant(list) && keys(list).size() == list.items.size());
    // Else any of them may be there.
    if (!exact) return null;
    Set<String> keys = new LinkedHashSet<>(keys(lists.items.get(0)));
    List<MValue> items = new ArrayList<>(lists.items.get(0).items);
    for (MValue list : lists.items.subList(1, lists.items.size())) {
      Set<String> others = keys(list);
      if (!union) items.removeIf(item -> !others.contains(key(item)));
      for (MValue item : union ? list.items : List.<MValue>of()) {
        if (keys.add(key(item))) items.add(item);
      }
    }
    return MValue.list(items);
  }
}
