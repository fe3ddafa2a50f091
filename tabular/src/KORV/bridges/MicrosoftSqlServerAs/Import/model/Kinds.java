package KORV.bridges.MicrosoftSqlServerAs.Import.model;

/**
 * The names of the kinds that details are made of: those that tabular definitions need of the lists in
 * framework/details, under the same names.
 */
public final class Kinds {
  public enum Item {
    relationship,
    everyMeasure,
    partition,
    refreshPolicy,
    role,
    permission,
    calculationItem,
    sharedExpression,
    function,
    culture,
    calendar,
    other
  }

  public enum RelationKind {
    computed,
    condition,
    member,
    counted,
    reads,
    fills,
    applied,
    order,
    group,
    basis,
    joins,
    follows,
    filters,
    secures,
    belongs,
    formats,
    detailRows,
    connects,
    refreshes,
    mentions
  }

  public enum Passed { designerNotes, timeStamps, processing, rowNumbers, secrets, otherCommands }

  /** Why a name in an expression has no source. */
  public enum State { exists, mistake, beyond }

  private Kinds() {}
}
