#pragma once

// What the elements of a definition refer to by IDs. It is resolved once all of them have been read: an ID
// may stand in front of what it means.

#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>

#include "framework/std/spellings.h"
#include "reader/elements/id_registry.h"
#include "reader/elements/number_set.h"
#include "reader/run/import_run.h"

namespace tav {

struct IdReference {
  ItemId item;            ///< what refers
  RelationKind relation;  ///< from what is referred to
  IdSpace space;
  const IdScope* scope;
  std::string_view id;
  std::string_view tag;   ///< of the element with the ID
  std::string_view text;  ///< of the relation
};

/// A binding to a table of a data source view, or to a column of it.
struct ColumnReference {
  ItemId item;
  RelationKind relation;
  std::string_view view;
  std::string_view table;
  std::string_view column;  ///< empty for the whole table
  std::string_view text;
};

class IdReferences {
 public:
  explicit IdReferences(ImportRun& run) : run_(run), ids_(*run.details) {}

  [[nodiscard]] IdRegistry& ids() noexcept { return ids_; }
  /// The texts of the reference, like what it is of, live as long as the document.
  void add(const IdReference& reference);
  void add(const ColumnReference& reference) { columns_.push_back(reference); }
  /// A relation between two items, once for all times that it is said.
  void relate(RelationKind kind, ItemId from, ItemId to, std::string_view text = {});

  /// Turns references into relations, and those that lead nowhere into open names.
  void resolve();

 private:
  void resolve(const IdReference& reference);
  void resolve(const ColumnReference& reference);
  void addMissing(const IdReference& reference);
  /// Whether an item has not named that yet which does not exist.
  bool isNewMissing(ItemId item, std::string_view name) { return missing_.emplace(item, name).second; }
  std::string nearestColumn(const ColumnReference& reference);
  std::string_view nearestTable(const ColumnReference& reference);

  /// A reference while it waits, in half the room: a large definition has hundreds of thousands.
  struct Waiting {
    const char* id;
    const IdScope* scope;
    std::uint32_t idSize;
    ItemId item;
    std::uint32_t words;  // in words_
    RelationKind relation;
    IdSpace space;
  };
  /// A tag and a text that many references share.
  struct Words {
    std::string_view tag;
    std::string_view text;
  };
  struct WordsHash {
    std::size_t operator()(const std::pair<const char*, const char*>& key) const noexcept {
      return std::hash<const void*>()(key.first) * 31 + std::hash<const void*>()(key.second);
    }
  };
  std::uint32_t wordsOf(const IdReference& reference);
  [[nodiscard]] IdReference whole(const Waiting& waiting) const;

  ImportRun& run_;
  IdRegistry ids_;
  // They go as they are resolved, while the relations that they become are added.
  std::deque<Waiting> references_;
  std::vector<Words> words_;
  std::unordered_map<std::pair<const char*, const char*>, std::uint32_t, WordsHash>
      wordsByPlace_;  // numbers, by where tag and text lie
  std::deque<ColumnReference> columns_;
  NumberSet known_;  // relations without a text
  std::set<std::pair<ItemId, std::string>> missing_;
  std::unordered_map<const TAVClassifier*, Spellings> columnSpellings_;  // of tables that a column misses
  std::unordered_map<std::string_view, Spellings> tableSpellings_;       // of views that a table misses
};

}  // namespace tav
