#pragma once

// What the steps of an import put on record: every object by its ID, the dimensions and cubes in order, and
// what names mean among them. Nothing searches it: references are found through reader/run/id_index.h, and no
// definition gives the analyzer a dimension to resolve. It is kept for what is built upon the reader, which
// counts on these names and this order of steps.

#include <map>

#include "framework/expression/analyzer.h"
#include "framework/model/class_list.h"
#include "framework/std/hashtable.h"
#include "framework/std/vector.h"

/// Model objects by the ID that they have in the definition. It owns none of them. An object without an ID is
/// kept but never found. Adding compares nothing, so it costs the same however many share an ID.
class ID2ObjectHashtable : public TAVHashtable {
 public:
  explicit ID2ObjectHashtable(int buckets);
  ~ID2ObjectHashtable() override;

  /// 0 when both have the same ID and it is not empty; otherwise not 0.
  int compare2Object(const void* a, const void* b) const override;
  /// The same for an object and an ID, a C string.
  int compare2Key(const void* object, const void* key) const override;
  std::uint32_t hashObject(const void* object) const override;
  std::uint32_t hashKey(const void* key) const override;
};

/// Resolves names of the form `<ID>.<feature name>` to the features of dimensions that stand directly in a
/// cube's package.
class XMLAExpressionAnalyzer : public TAVExpressionAnalyzer {
 public:
  explicit XMLAExpressionAnalyzer(TAVLog* log);
  ~XMLAExpressionAnalyzer() override;

  /// From now on names are resolved in the cube packages of this folder. It reads their IDs at once.
  void setCubesFolder(const TAVDesignPackage& folder);

  using TAVExpressionAnalyzer::getSrcElements;
  void getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) override;
  TAVFeature* getDstFeature(TAVClassifier* classifier, const TAVString& name, int reserved) override;
  bool isStarCandidate(TAVFeature* feature, bool qualified) override;
  bool isClassifierDefined(TAVClassifier* classifier) override;

  /// Appends the features that a name of two parts means; nothing without a cubes folder.
  virtual void getElementByName(const TAVString& text, const TAVString& name, int partCount,
                                TAVElementType elementType, TAVArgumentType argumentType,
                                const TAVVector& scope, TAVVector& result);

 private:
  std::multimap<TAVString, TAVDimension*> dimensions_;  // those whose ID is their package's, in order
};

namespace tav {

struct Records {
  explicit Records(TAVLog* log);

  /// Enters an object under the ID that it has now.
  void add(TAVElement& object);
  /// The same for one that is listed in the order of the document, too.
  void add(TAVDimension& dimension);
  void add(TAVCube& cube);

  ID2ObjectHashtable registry;
  TAVVector dimensions;
  TAVVector cubes;
  XMLAExpressionAnalyzer analyzer;
};

}  // namespace tav
