package KORV.bridges.MicrosoftSqlServerAs.Import.model;

import java.util.ArrayList;
import java.util.EnumMap;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** What a definition says beyond its model. */
public final class Details {
  /** What only the details have. */
  public static final class Item extends Subject {
    final Kinds.Item kind;
    final Subject owner;
    final String name;
    final String text;
    final String language;

    private Item(Kinds.Item kind, Subject owner, String name, String text, String language) {
      this.kind = kind;
      this.owner = owner;
      this.name = name;
      this.text = text;
      this.language = language;
    }
  }

  /** From what is named to what names it. */
  record Related(Kinds.RelationKind kind, Subject from, Subject to, String text) {}

  record Setting(String name, String value) {}

  record OpenName(Subject subject, String name, Kinds.State state, String note) {}

  final List<Item> items = new ArrayList<>();
  final Set<Related> relations = new LinkedHashSet<>();
  final Map<Subject, List<Setting>> settings = new LinkedHashMap<>();
  final Set<OpenName> openNames = new LinkedHashSet<>();
  final Map<Kinds.Passed, Integer> passed = new EnumMap<>(Kinds.Passed.class);

  public Item add(Kinds.Item kind, Subject owner, String name) { return add(kind, owner, name, "", ""); }

  /** `text` is the expression that the item consists of. */
  public Item add(Kinds.Item kind, Subject owner, String name, String text, String language) {
    Item item = new Item(kind, owner, name, text, text.isEmpty() ? "" : language);
    items.add(item);
    return item;
  }

  public void relate(Kinds.RelationKind kind, Subject from, Subject to) { relate(kind, from, to, ""); }

  public void relate(Kinds.RelationKind kind, Subject from, Subject to, String text) {
    relations.add(new Related(kind, from, to, text));
  }

  public void set(Subject subject, String name, String value) {
    settings.computeIfAbsent(subject, s -> new ArrayList<>(2)).add(new Setting(name, value));
  }

  public void addOpenName(Subject subject, String name, Kinds.State state, String note) {
    openNames.add(new OpenName(subject, name, state, note));
  }

  public void passOver(Kinds.Passed what, int count) { passed.merge(what, count, Integer::sum); }
}
