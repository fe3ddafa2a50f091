#pragma once

// What the readers of elements share: where the walk through a definition is, and where they write.

#include <string_view>

#include "reader/elements/element_rules.h"
#include "reader/elements/id_scopes.h"
#include "reader/elements/references.h"
#include "reader/elements/setting_writer.h"

namespace tav {

/// An element that the walk is in.
struct ElementPlace {
  const TAVDOMElement* element = nullptr;
  RuleTree::Node node = 0;
  ItemId item = kNoItem;
  const IdScope* scope = nullptr;
  RelationKind columns = RelationKind::mentions;  ///< of columns bound below
  std::string_view text;                          ///< of such relations
  const TAVDOMElement* label = nullptr;           ///< what the names of its settings say already
  std::int32_t next = 0;                          ///< child
  std::size_t place = 0;                          ///< in the path of settings
  std::size_t outerBegin = 0;                     ///< of an item: where such paths began outside
  std::size_t settingCount = 0;                   ///< before it
  bool isItem = false;
  bool isList = false;
  bool isFold = false;
};

struct ElementReading {
  ElementReading(ImportRun& importRun, IdReferences& idReferences)
      : run(importRun), details(*importRun.details), references(idReferences), settings(*importRun.details) {}

  ImportRun& run;
  Details& details;
  IdReferences& references;
  SettingWriter settings;
  IdScopes scopes;
  const RuleTree& rules = RuleTree::get();

  [[nodiscard]] const ElementRule& rule(const ElementPlace& place) const noexcept {
    return rules.rule(place.node);
  }
};

}  // namespace tav
