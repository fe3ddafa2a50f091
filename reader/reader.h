#pragma once

// The reader of one native import: it turns the document of a database definition into a model. Its members
// are defined beside the kind of object that they import: the document and the database here, dimensions in
// dimensions/, the run itself in bridge/.

#include <deque>
#include <memory>
#include <vector>

#include "framework/dom/dom.h"
#include "framework/dsv/dsv_reader.h"
#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"
#include "framework/std/vector.h"
#include "framework/types/data_store_version.h"
#include "framework/types/data_type_converter.h"
#include "reader/id_index.h"
#include "reader/registry.h"

/// The data store that definitions and their data source views are kept in.
extern const TAVDataStoreVersion kDataSourceViewStore;

/// What the reader notes of one Attribute element, for the levels that are built from it.
struct AttributeRecord {
  TAVString id;
  TAVString name;
  TAVString description;
  std::vector<TAVString> relatedIds;                    ///< of its attribute relationships, in document order
  TAVDimensionAttribute* dimensionAttribute = nullptr;  ///< null when no column is bound to the attribute
  TAVDimension* dimension = nullptr;
};

class TAVSQLServerXMLAImportBridge {
 public:
  explicit TAVSQLServerXMLAImportBridge(TAVLog* log);
  TAVSQLServerXMLAImportBridge(const TAVSQLServerXMLAImportBridge&) = delete;
  TAVSQLServerXMLAImportBridge& operator=(const TAVSQLServerXMLAImportBridge&) = delete;
  ~TAVSQLServerXMLAImportBridge();

  /// Reads the file into the model. Always true when it returns; a missing file or a document that is not
  /// well-formed is a TAVException.
  bool importFile(const TAVString& identifier, TAVStoreModel* model, TAVFile file);

  // What subsequent imports of one database share.
  TAVString importTypeName(const TAVString& dataType);
  TAVDerivedType& getDerivedType(const TAVString& typeName, const TAVString& nativeDataType);

  /// Texts and settings of a measure that is to be made.
  struct MeasureDescription {
    TAVString name;
    TAVString description;
    TAVString nativeType;
    TAVString nativeId;
    TAVAggregationOperatorType aggregation;
    bool hidden = false;
  };
  /// A new measure of `owner`; `plainAdd` keeps its name even if it repeats.
  TAVMeasure& createMeasure(TAVClassifier& owner, const MeasureDescription& measure, bool plainAdd);
  /// A new measure of a measure group with its copy in the cube and the lineage from the first to the second.
  /// Both classifiers must be the destination of a classifier map. Returns the measure group's one.
  TAVMeasure& createMeasurePair(const MeasureDescription& measure, const TAVString& dataType,
                                const TAVString& expression, TAVDimension& measureGroup, TAVCube& cube);

 private:
  bool readDocument();

  void importDocument(const TAVDOMElement& root);
  static void setNameIdDescription(const TAVDOMElement& element, TAVElement& object);
  void tidyModel();
  static void clearPackageIds(TAVDesignPackage& package);

  void importDatabase(const TAVDOMElement& database, TAVOlapSchema& schema);
  void importDataSources(const TAVDOMElement& database);
  void importDataSourceViews(const TAVDOMElement& database);
  void indexColumns(const TAVDesignPackage& view);
  void deleteForeignSchemas(const TAVOlapSchema& schema);
  void importDimensions(const TAVDOMElement& database, TAVOlapSchema& schema);
  void importCubes();
  TAVDesignPackage& addFolder(const TAVString& name);

  tav::Owned<TAVDimension> importDimension(const TAVDOMElement& element, TAVOlapSchema& schema);
  void importHierarchy(const TAVDOMElement& element, TAVDimension& dimension);
  TAVLevel* importLevel(const TAVDOMElement& element, TAVDimension& dimension);
  static TAVLevelAttribute* addLevelAttributes(const AttributeRecord& record, TAVLevel& level, int& counter);
  [[nodiscard]] const AttributeRecord* findAttributeRecord(std::string_view id,
                                                           const TAVDimension& dimension) const;

  void importAttribute(const TAVDOMElement& element, TAVDimension& dimension,
                       const TAVClassifierMap& dimensionMap, int& counter);
  void bindAttribute(const TAVDOMElement& binding, AttributeRecord& record,
                     const TAVClassifierMap& dimensionMap, int& counter);
  void linkFeatureToColumn(std::string_view viewId, TAVFeature& feature, std::string_view tableId,
                           std::string_view columnId);
  static void addColumnLineage(TAVFeature& column, TAVFeature& feature);

  void registerObject(TAVElement& object);
  void cleanUp();

  std::unique_ptr<TAVDOM> dom_;
  const TAVDOMElement* root_ = nullptr;  // belongs to dom_
  TAVFile file_;
  TAVLog* log_;
  std::unique_ptr<TAVDsvReader> dsvReader_;  // while one data source view is being read
  TAVDesignPackage* viewFolder_ = nullptr;
  std::unique_ptr<TAVDataTypeConverter> typeConverter_;
  TAVStoreModel* model_ = nullptr;
  TAVDesignPackage* joinGroups_ = nullptr;
  ID2ObjectHashtable registry_;
  TAVVector dimensions_;  // in document order
  TAVVector cubes_;       // in document order
  std::deque<AttributeRecord> attributeRecords_;
  tav::IdIndex<AttributeRecord> recordsOfDimension_;  // of the dimension that is being imported
  tav::IdIndex<TAVFeature> columns_;                  // by view, table and column ID
};
