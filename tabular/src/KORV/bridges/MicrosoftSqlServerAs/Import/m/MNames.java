package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.Deque;
import java.util.EnumSet;
import java.util.HashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** The names in a query that no step, field or parameter around them defines. */
final class MNames {
  private static final Set<MNode.Kind> DEFINING =
      EnumSet.of(MNode.Kind.LET, MNode.Kind.RECORD, MNode.Kind.FUNCTION);

  /** A part of the tree that is entered, or that is left. */
  private record Visit(MNode node, boolean leaves) {}

  private MNames() {}

  static Set<String> free(MNode root) {
    Set<String> found = new LinkedHashSet<>();
    Map<String, Integer> defined = new HashMap<>();
    Deque<Visit> waiting = new ArrayDeque<>(List.of(new Visit(root, false)));
    while (!waiting.isEmpty()) {
      Visit visit = waiting.pop();
      MNode node = visit.node;
      if (DEFINING.contains(node.kind())) {
        for (String name : node.names()) defined.merge(name, visit.leaves ? -1 : 1, Integer::sum);
        if (!visit.leaves) waiting.push(new Visit(node, true));
      }
      if (visit.leaves) continue;
      boolean isName = node.kind() == MNode.Kind.NAME || node.kind() == MNode.Kind.OWN_NAME;
      if (isName && defined.getOrDefault(node.text(), 0) == 0) found.add(node.text());
      for (int i = node.items().size(); i-- > 0;) waiting.push(new Visit(node.items().get(i), false));
    }
    return found;
  }
}
