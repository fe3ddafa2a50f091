#pragma once

// The reader of one native import: it turns the document of a database definition into a model. Its members
// are defined beside the kind of object that they import: the document and the database here, dimensions in
// dimensions/, the run itself in bridge/.

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "framework/dom/dom.h"
#include "framework/expression/analyzer.h"
#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"
#include "framework/std/vector.h"
#include "framework/types/data_store_version.h"
#include "framework/types/data_type_converter.h"
#include "reader/id_index.h"
#include "reader/model_names.h"
#include "reader/registry.h"
#include "views/dsv_reader.h"

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

/// The measure groups of one "Measure Groups" folder by ID.
struct MeasureGroupFolder {
  tav::IdIndex<TAVClassifier> byId;                ///< linked ones too, compared exactly
  tav::IdIndex<TAVDimension> dimensionByFoldedId;  ///< letter case ignored

  void add(TAVDimension& group) {
    byId.add(group, group.nativeId);
    dimensionByFoldedId.add(group, tav::foldCase(group.nativeId.view()));
  }
};

class cScriptParser;

class TAVSQLServerXMLAImportBridge {
 public:
  /// Resolves names of the form `<ID>.<feature name>` to the features of dimensions that stand directly in a
  /// cube's package.
  class XMLAExpressionAnalyzer : public TAVExpressionAnalyzer {
   public:
    explicit XMLAExpressionAnalyzer(TAVLog* log);
    ~XMLAExpressionAnalyzer() override;

    /// The folder of all cube packages; without it every name means nothing.
    void setCubesFolder(const TAVDesignPackage& folder);

    using TAVExpressionAnalyzer::getSrcElements;
    void getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) override;
    TAVFeature* getDstFeature(TAVClassifier* classifier, const TAVString& name, int reserved) override;
    bool isStarCandidate(TAVFeature* feature, bool qualified) override;
    bool isClassifierDefined(TAVClassifier* classifier) override;
    virtual void getElementByName(const TAVString& text, const TAVString& name, int partCount,
                                  TAVElementType elementType, TAVArgumentType argumentType,
                                  const TAVVector& scope, TAVVector& result);

   private:
    std::multimap<TAVString, TAVDimension*> dimensions_;  // those whose ID is their package's, in order
  };

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
  void importCubes(const TAVDOMElement& cubes, TAVDesignPackage& folder);
  void resolveMeasures(const TAVDesignPackage& cubesFolder);
  void resolveMeasureSources(const TAVDimension& dimension);
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

  TAVCube* importCube(const TAVDOMElement& element, TAVDesignPackage& cubesFolder);
  static TAVDesignPackage& addCubeFolder(TAVDesignPackage& cubePackage, const TAVString& name);
  void importCubeDimensions(const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& package,
                            TAVOlapSchema& schema);
  void importCubeDimension(const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& package,
                           TAVOlapSchema& schema);
  void importMeasureGroups(const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& package);
  void importMeasureGroup(const TAVDOMElement& element, TAVCube& cube, const TAVString& viewId,
                          TAVDesignPackage& folder);
  void importMeasure(const TAVDOMElement& element, TAVDimension& group, TAVCube& cube,
                     const TAVString& viewId);
  void importLinkedMeasureGroup(const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& folder);
  void linkMeasures(const TAVDimension& sourceGroup, const std::unordered_map<std::string, int>& listings,
                    TAVClassifierMap& map, TAVAliasClassifier& alias, TAVCube& cube);
  void importLinkedMeasureGroups(const TAVDOMElement& element, TAVCube& cube);
  void importMdxScripts(const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& package);
  void importMdxScript(const TAVDOMElement& element, TAVDimension& calculatedMeasures, TAVCube& cube);
  void importKpis(const TAVDOMElement* element, TAVCube& cube, TAVDesignPackage& package);
  void importKpi(const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& folder);
  void resolveCubeExpressions(TAVCube& cube);
  void resolveFolderExpressions(cScriptParser& parser, TAVDesignPackage* folder);
  void resolveExpression(cScriptParser& parser, TAVFeatureMap& map);

  void registerObject(TAVElement& object);
  void cleanUp();

  std::unique_ptr<TAVDOM> dom_;
  const TAVDOMElement* root_ = nullptr;  // belongs to dom_
  XMLAExpressionAnalyzer analyzer_;
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
  tav::IdIndex<TAVDimension> dimensionsById_;
  tav::IdIndex<TAVDesignPackage> cubePackages_;  // letter case ignored
  std::unordered_map<const TAVPackage*, MeasureGroupFolder> measureGroups_;
  std::optional<tav::ModelNames> names_;
};
