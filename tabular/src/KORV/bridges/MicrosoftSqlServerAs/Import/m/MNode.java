package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;

/**
 * A part of a query's tree. What `text`, `names` and `items` hold is told with each kind; `at` is
 * where it begins in the text, and `end` where an expression that stands by itself ends.
 */
record MNode(Kind kind, String text, List<String> names, List<MNode> items, int at, int end) {
  enum Kind {
    /** A constant in `text`. */
    TEXT,
    NUMBER,
    LOGICAL,
    /** A value that has no source and that nothing depends on: null, error, `...`. */
    NOTHING,
    /** A name in `text`. */
    NAME,
    /** A name behind `@`, which means the value that it stands in, too. */
    OWN_NAME,
    /**
       Steps under `names`, in an order in which each follows those that it names; the last item is the
       result.
     */
    LET,
    /** Fields under `names`. */
    RECORD,
    LIST,
    /** The first and last item of a part of a list: 1..9. */
    RANGE,
    /** A function of `names`; the item is its body. `each` is a function of `_`. */
    FUNCTION,
    /** Conditions, each before its result; the last item is the result behind the last `else`. */
    IF,
    /** The value, and behind `otherwise` another one. */
    TRY,
    /** The value, and behind `catch` a function that gives another one. */
    CATCH,
    /** Operands with the operators between them in `names`, from left to right. */
    OPERATION,
    /** A value, and behind it what is picked from it: FIELD, COLUMNS, ITEM and ARGUMENTS. */
    ACCESS,
    /** [Name]: the field in `text`. Alone it is a field of the row that `_` stands for. */
    FIELD,
    /** [[A], [B]]: the fields in `names`. */
    COLUMNS,
    /** {place or key}. */
    ITEM,
    /** (a, b). */
    ARGUMENTS,
    /** A type; `names` are the columns of a table type. */
    TYPE
  }

  static MNode of(Kind kind, String text, int at) {
    return new MNode(kind, text, List.of(), List.of(), at, at);
  }

  static MNode of(Kind kind, List<String> names, List<MNode> items, int at) {
    return new MNode(kind, "", names, items, at, at);
  }

  MNode until(int place) {
    return new MNode(kind, text, names, items, at, place);
  }
}
