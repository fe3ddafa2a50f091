package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;
import java.util.Set;

/** What functions and operators may ask of the evaluation that they are part of. */
interface MEvaluation {
  MContext context();

  Relation.Budget budget();

  /** A fault at a place of the text that is being evaluated. */
  MFault fault(String cause, int at);

  /** One of several values, decided by conditions: those give values to a cell, and none to a table. */
  MValue either(List<MValue> choices, List<MValue> conditions);

  /** The columns that several values are made of, with their items and fields. */
  Set<Relation.Column> union(List<MValue> values);

  /** A table of which no more is known than what it is made of. */
  MValue unknownTable(List<MValue> arguments, MFault fault);
}
