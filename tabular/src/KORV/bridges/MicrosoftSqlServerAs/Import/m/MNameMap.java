package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.List;
import java.util.function.Consumer;

/**
 * A map from names that never changes. With one more name it is another map that shares nearly all of the
 * first, so that each step of a query can have its own without a copy. A balanced tree; no text makes
 * look-ups slow.
 */
final class MNameMap<V> {
  private record Node<V>(String name, V value, Node<V> less, Node<V> more, int height) {
    static <V> Node<V> of(String name, V value, Node<V> less, Node<V> more) {
      return new Node<>(name, value, less, more, 1 + Math.max(heightOf(less), heightOf(more)));
    }
  }

  private static final MNameMap<?> EMPTY = new MNameMap<>(null);

  private final Node<V> root;

  private MNameMap(Node<V> root) { this.root = root; }

  @SuppressWarnings("unchecked") // without entries it is a map to anything
  static <V> MNameMap<V> empty() {
    return (MNameMap<V>) EMPTY;
  }

  boolean isEmpty() { return root == null; }

  /** Null when the name is not there. */
  V get(String name) {
    Node<V> at = root;
    while (at != null) {
      int order = name.compareTo(at.name);
      if (order == 0) return at.value;
      at = order < 0 ? at.less : at.more;
    }
    return null;
  }

  MNameMap<V> with(String name, V value) { return new MNameMap<>(put(root, name, value)); }

  /** In the order of the names. */
  List<V> values() {
    List<V> values = new ArrayList<>();
    visit(root, node -> values.add(node.value));
    return values;
  }

  private static <V> void visit(Node<V> at, Consumer<Node<V>> visitor) {
    if (at == null) return;
    visit(at.less, visitor);
    visitor.accept(at);
    visit(at.more, visitor);
  }

  private static int heightOf(Node<?> node) { return node == null ? 0 : node.height; }

  private static <V> Node<V> put(Node<V> at, String name, V value) {
    if (at == null) return Node.of(name, value, null, null);
    int order = name.compareTo(at.name);
    if (order == 0) return Node.of(name, value, at.less, at.more);
    if (order < 0) return balanced(Node.of(at.name, at.value, put(at.less, name, value), at.more));
    return balanced(Node.of(at.name, at.value, at.less, put(at.more, name, value)));
  }

  private static <V> Node<V> balanced(Node<V> node) {
    int lean = heightOf(node.less) - heightOf(node.more);
    if (lean > 1) {
      boolean inner = heightOf(node.less.less) < heightOf(node.less.more);
      return toMore(inner ? Node.of(node.name, node.value, toLess(node.less), node.more) : node);
    }
    if (lean < -1) {
      boolean inner = heightOf(node.more.more) < heightOf(node.more.less);
      return toLess(inner ? Node.of(node.name, node.value, node.less, toMore(node.more)) : node);
    }
    return node;
  }

  private static <V> Node<V> toMore(Node<V> node) {
    Node<V> up = node.less;
    return Node.of(up.name, up.value, up.less, Node.of(node.name, node.value, up.more, node.more));
  }

  private static <V> Node<V> toLess(Node<V> node) {
    Node<V> up = node.more;
    return Node.of(up.name, up.value, Node.of(node.name, node.value, node.less, up.less), up.more);
  }
}
