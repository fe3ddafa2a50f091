#pragma once

// What a bridge says of itself: the tools whose metadata it reads, and its own version.

#include <vector>

#include "framework/std/string.h"

/// The fixed part of a bridge's specification, as the framework knows it.
class TAV_API TAVBridgeSpecificationLiteral {
 public:
  struct Texts {
    TAVString toolWeb;
    TAVString vendorName;
    TAVString toolName;
    TAVString toolVersions;
    TAVString methodologySummary;
    TAVString descriptionLiteralId;
  };
  TAVBridgeSpecificationLiteral(TAVString bridgeIdentifier, Texts texts);

  /// The identifier that getBridgeSpecification() finds the literal by.
  [[nodiscard]] const TAVString& getBridgeIdentifier() const noexcept { return bridgeIdentifier_; }
  /// The address of the tool's pages; empty when there is none.
  [[nodiscard]] const TAVString& getTool_Web() const noexcept { return texts_.toolWeb; }
  [[nodiscard]] const TAVString& getVendor_Name() const noexcept { return texts_.vendorName; }
  [[nodiscard]] const TAVString& getTool_Name() const noexcept { return texts_.toolName; }
  [[nodiscard]] const TAVString& getTool_Versions() const noexcept { return texts_.toolVersions; }
  [[nodiscard]] const TAVString& getMethodology_Summary() const noexcept { return texts_.methodologySummary; }
  /// The key, in the bridge's own catalogue, of the text that describes the bridge.
  [[nodiscard]] const TAVString& getInternalCode_DescriptionLiteralId() const noexcept {
    return texts_.descriptionLiteralId;
  }

 private:
  TAVString bridgeIdentifier_;
  Texts texts_;
};

/// A bridge's specification as its host shows it; empty until the bridge fills it.
class TAV_API TAVBridgeSpecification {
 public:
  /// Replaces everything. `deprecated` says that another bridge should be used instead.
  void initialize(const TAVString& toolWeb, const TAVString& vendorName, const TAVString& toolName,
                  const TAVString& toolVersions, const TAVString& methodologySummary,
                  const TAVString& buildVersion, const TAVString& description, bool deprecated);

  [[nodiscard]] const TAVString& getToolWeb() const noexcept { return toolWeb_; }
  [[nodiscard]] const TAVString& getVendorName() const noexcept { return vendorName_; }
  [[nodiscard]] const TAVString& getToolName() const noexcept { return toolName_; }
  [[nodiscard]] const TAVString& getToolVersions() const noexcept { return toolVersions_; }
  [[nodiscard]] const TAVString& getMethodologySummary() const noexcept { return methodologySummary_; }
  [[nodiscard]] const TAVString& getBuildVersion() const noexcept { return buildVersion_; }
  [[nodiscard]] const TAVString& getDescription() const noexcept { return description_; }
  [[nodiscard]] bool isDeprecated() const noexcept { return deprecated_; }

 private:
  TAVString toolWeb_;
  TAVString vendorName_;
  TAVString toolName_;
  TAVString toolVersions_;
  TAVString methodologySummary_;
  TAVString buildVersion_;
  TAVString description_;
  bool deprecated_ = false;
};

/// The versions of data stores that a bridge supports, in the order in which it adds them.
class TAV_API TAVDataStoreList {
 public:
  struct Entry {
    TAVString label;      ///< what a user sees: "9.0 (2005) to 10.0 (2008)"
    TAVString dataStore;  ///< the name of the kind of data store
    int major = 0;
    int minor = 0;
    int release = 0;
  };
  void add(const TAVString& label, const TAVString& dataStore, int major, int minor, int release) {
    entries_.push_back({label, dataStore, major, minor, release});
  }

  [[nodiscard]] std::int32_t getCount() const noexcept { return static_cast<std::int32_t>(entries_.size()); }
  [[nodiscard]] auto begin() const noexcept { return entries_.begin(); }
  [[nodiscard]] auto end() const noexcept { return entries_.end(); }

 private:
  std::vector<Entry> entries_;
};
