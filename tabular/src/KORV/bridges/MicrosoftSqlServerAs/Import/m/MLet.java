package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/**
 * Puts the steps of a `let` in an order in which each follows those that it names, and leaves out those that
 * the result does not need. So a chain of steps, in whatever order it is written, is no deep chain of calls.
 */
final class MLet {
  interface Reader {
    MNode read() throws MSyntaxFault;
  }

  private final List<String> used;
  private final int at;
  private final List<String> names = new ArrayList<>();
  private final List<MNode> values = new ArrayList<>();
  /** For each step where its names begin and end in `used`. */
  private final List<int[]> ranges = new ArrayList<>();
  private final Map<String, Integer> places = new HashMap<>();

  MLet(List<String> used, int at) {
    this.used = used;
    this.at = at;
  }

  void step(String name, Reader reader) throws MSyntaxFault {
    int begin = used.size();
    values.add(reader.read());
    ranges.add(new int[] {begin, used.size()});
    places.put(name, names.size());
    names.add(name);
  }

  /** The names behind the last step are the result's. */
  MNode node(MNode result) {
    int begin = ranges.get(ranges.size() - 1)[1];
    boolean[] seen = new boolean[names.size()];
    List<String> ordered = new ArrayList<>();
    List<MNode> items = new ArrayList<>();
    Deque<int[]> open = new ArrayDeque<>(List.of(new int[] {-1, begin, used.size()}));
    while (!open.isEmpty()) {
      int[] step = open.peek();
      if (step[1] < step[2]) {
        Integer place = places.get(used.get(step[1]++));
        if (place == null || seen[place]) continue;
        seen[place] = true;
        open.push(new int[] {place, ranges.get(place)[0], ranges.get(place)[1]});
        continue;
      }
      open.pop();
      if (step[0] < 0) continue;
      ordered.add(names.get(step[0]));
      items.add(values.get(step[0]));
    }
    items.add(result);
    return MNode.of(MNode.Kind.LET, ordered, items, at);
  }
}
