package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import java.util.List;

/** A part of the tree of a DAX expression. `place` is where its text begins, in characters from 0. */
record DaxNode(Kind kind, int place, String table, String name, List<DaxNode> parts) {
  enum Kind {
    /** A number, a date, TRUE; an argument that is left out. */
    CONSTANT,
    /** A text in double quotes, which is its name. */
    TEXT,
    /** `table` is null for [Name], and empty for ''[Name]. */
    COLUMN,
    /** A name alone in single quotes: a table. */
    TABLE,
    /** A name alone without quotes: a variable, a parameter, a table, or a word such as DESC. */
    WORD,
    CALL,
    /** { ... }, with a part for each row. */
    ROWS,
    /** ( a, b ) */
    TUPLE,
    /** Operands, whatever the operators. */
    OPERATION,
    /** VAR ... RETURN ...: the values of the variables as DEFINITION, then the result. */
    BLOCK,
    DEFINITION
  }

  static DaxNode constant(int place) {
    return new DaxNode(Kind.CONSTANT, place, null, "", List.of());
  }

  static DaxNode of(Kind kind, int place, String name, List<DaxNode> parts) {
    return new DaxNode(kind, place, null, name, parts);
  }

  static DaxNode column(int place, String table, String name) {
    return new DaxNode(Kind.COLUMN, place, table, name, List.of());
  }

  boolean is(Kind one) {
    return kind == one;
  }

  /** The name as messages write it. */
  String written() {
    if (kind != Kind.COLUMN) return "'" + name.replace("'", "''") + "'";
    String quoted = table == null ? "" : "'" + table.replace("'", "''") + "'";
    return quoted + "[" + name.replace("]", "]]") + "]";
  }
}
