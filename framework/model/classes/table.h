#pragma once

#include "framework/model/classes/classifier.h"
#include "framework/model/link.h"

/// A table of a data source view, with what lineage to the database needs to know of it.
class TAV_API TAVTable : public TAVClassifier {
 public:
  TAVTable() : TAVClassifier(tav::classId<TAVTable>) {}
  /// The schema of the database object; empty when the view does not know it.
  TAVString schemaName;
  /// "Table", "View" (both of the database) or "NamedQuery" (of the data source view).
  TAVString tableType;
  /// The text of a named query.
  TAVString query;
  /// The ID of the data source that feeds the table.
  TAVString dataSourceId;
  /// The tables, views and functions of the database that a named query reads, one a line: their names as the
  /// query has them, `dbo.[Fact Sales]`.
  TAVString querySources;
};

template <> struct tav::Meta<TAVTable> {
  static constexpr std::array attributes{
      attribute<&TAVTable::schemaName>("schemaName"), attribute<&TAVTable::tableType>("tableType"),
      attribute<&TAVTable::query>("query"), attribute<&TAVTable::dataSourceId>("dataSourceId"),
      attribute<&TAVTable::querySources>("querySources")};
  static constexpr std::array<LinkRow, 0> links{};
};
