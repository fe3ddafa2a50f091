package KORV.bridges.MicrosoftSqlServerAs.Import.model;

/** What details speak of: an object of the model, or an item that only the details have. */
public abstract class Subject {
  /** The number that the document gives it. */
  int id;
}
