#pragma once

// The reader of native imports as its callers know it. The steps of an import stand in database.cpp.

#include <memory>

#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"
#include "reader/run/measures.h"
#include "reader/run/records.h"

/// Turns the document of a database definition into a model. The log, and the model of the last import, must
/// outlive the reader.
class TAVSQLServerXMLAImportBridge {
 public:
  using ID2ObjectHashtable = ::ID2ObjectHashtable;
  using XMLAExpressionAnalyzer = ::XMLAExpressionAnalyzer;
  using MeasureDescription = tav::MeasureDescription;

  explicit TAVSQLServerXMLAImportBridge(TAVLog* log);
  TAVSQLServerXMLAImportBridge(const TAVSQLServerXMLAImportBridge&) = delete;
  TAVSQLServerXMLAImportBridge& operator=(const TAVSQLServerXMLAImportBridge&) = delete;
  /// Cleans up after an import that an exception has ended: the model keeps what was read so far, without the
  /// definition's IDs and without maps and connections that lead nowhere.
  ~TAVSQLServerXMLAImportBridge();

  /// Reads the file into the model. Always true when it returns; a missing file or a document that is not
  /// well-formed is a TAVException.
  bool importFile(const TAVString& identifier, TAVStoreModel* model, TAVFile file);

  /// The framework's name of a definition's data type.
  TAVString importTypeName(const TAVString& dataType);
  /// The type of that name in the model of the last import, which must have begun.
  TAVDerivedType& getDerivedType(const TAVString& typeName, const TAVString& nativeDataType);

  /// A new measure of `owner`; `plainAdd` keeps its name even if it repeats.
  static TAVMeasure& createMeasure(TAVClassifier& owner, const MeasureDescription& measure, bool plainAdd);
  /// A new measure of a measure group with its copy in the cube and the lineage from the first to the second.
  /// Both stand in the model of the last import. Returns the measure group's one.
  TAVMeasure& createMeasurePair(const MeasureDescription& measure, const TAVString& dataType,
                                const TAVString& expression, TAVDimension& measureGroup, TAVCube& cube);

 private:
  void readDocument();
  void cleanUp();

  std::unique_ptr<tav::ImportRun> run_;
  bool importing_ = false;  // from the beginning of an import until its clean-up
};
