package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;
import java.util.Set;

/** What functions and operators may ask of the evaluation that they are part of. */
interface MEvaluation {
  MContext context();

  Budget budget();

  /** A fault at a place of the text that is being evaluated. */
  MFault fault(String cause, int at);

  /** What a part of the tree says in the text that is being evaluated. */
  String written(MNode node);

  /** One of several values, decided by conditions: those give values to a cell, and limit a table. */
  MValue either(List<MValue> choices, List<MValue> conditions);

  /** The columns that several values are made of, with their items and fields. */
  Set<Origin.Column> union(List<MValue> values);

  /** The tables that several values are taken from, with their items and fields. */
  Origin origin(List<MValue> values);

  /** A value of which no more is known than what it is made of. */
  default MValue mixed(List<MValue> values) { return MValue.of(union(values), origin(values)); }

  /** A table of which no more is known than what it is made of. */
  MValue unknownTable(List<MValue> arguments, MFault fault);
}
