#pragma once

// What the results and the conditions of a statement are fed from: columns of the tables of the database,
// traced through sub-queries, common table expressions and the columns that `*` stands for.

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "framework/expression/query.h"

namespace tav {

/// A table, view or function of the database.
struct QueryObject {
  std::vector<std::string>
      parts;  ///< of its name, without quotes; the last is the object's, one may be empty
};

/// A column of the database.
struct QuerySource {
  static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
  std::uint32_t object =
      kUnknown;        ///< whose column, a place in the list of objects; unknown when several may have it
  std::string column;  ///< without quotes, as the statement spells it
};

/// Follows the names of a statement, ignoring letter case. A name without a table belongs to the one table
/// that has such a column for certain, else to the one table that may have it.
class TAV_API QueryResolver {
 public:
  /// Whether an object of the list is known to have a column, whose name is given in small letters.
  using HasColumn = std::function<bool(std::uint32_t object, const std::string& column)>;

  /// The statement must outlive the resolver. Nothing is known of the objects until `setHasColumn`.
  explicit QueryResolver(const Query& query);
  void setHasColumn(HasColumn hasColumn) { hasColumn_ = std::move(hasColumn); }

  /// What the statement reads, each once, in the order of the text.
  [[nodiscard]] const std::vector<QueryObject>& objects() const noexcept { return objects_; }

  /// The column of the result that has this name, or null; a column that `*` stands for is none.
  [[nodiscard]] const QueryColumn* findColumn(std::string_view name);
  /// What feeds the column of the result that has this name, each once.
  [[nodiscard]] std::vector<QuerySource> sourcesOf(std::string_view name);
  /// The columns that the conditions name, each once.
  [[nodiscard]] std::vector<QuerySource> conditionSources();
  /// False when a statement made to be expensive was not followed to its end.
  [[nodiscard]] bool isComplete() const noexcept { return steps_ < maxSteps_; }

 private:
  static constexpr std::size_t kMaxTables = 256;  // of one SELECT; the database allows no more

  /// A column that waits to be followed: of a query by name, or by place among its columns.
  struct Target {
    std::uint32_t query = 0;
    std::string name;
    std::uint32_t place = kNoQuery;
  };

  enum class Has : std::uint8_t { no, perhaps, yes };
  using Names = std::vector<std::string_view>;
  using Expressions = std::vector<const QueryExpression*>;

  /// What was found out about a table of a block.
  struct Table {
    std::uint32_t object = QuerySource::kUnknown;
    const Expressions* expressions = nullptr;  // what it reads if it is none of the database
    std::vector<std::string> parts;            // in small letters
    std::string alias;                         // the last name that it goes by, in small letters
  };

  void addExpressions();
  void addTables(std::uint32_t block);
  void addObjects();
  [[nodiscard]] const Expressions* findExpressions(std::uint32_t query, const Table& table) const;
  [[nodiscard]] std::uint32_t findPlace(std::uint32_t block, const std::string& name);
  [[nodiscard]] std::uint32_t placeIn(const Names& names, const std::string& folded);
  [[nodiscard]] bool pivotHas(const QueryTable& table, const std::string& folded);

  std::vector<QuerySource> follow();
  void start();
  void addPart(const QueryPart& part);
  void addTarget(Target target);
  void visitTarget(const Target& target);
  void visitByName(std::uint32_t block, const std::string& name);
  void visitReference(const QueryReference& reference);
  bool visitQualified(std::uint32_t block, const std::vector<std::string>& parts);
  bool visitField(std::uint32_t block, const std::vector<std::string>& parts);
  bool visitTables(std::uint32_t block, std::uint32_t first, std::uint32_t end, const std::string& name);
  [[nodiscard]] std::uint32_t findQualified(std::uint32_t block, const std::vector<std::string>& parts);
  void visitNamed(std::uint32_t block, std::uint32_t table, const std::string& name);
  bool visitUnqualified(std::uint32_t block, const std::string& name);
  bool choose(std::uint32_t block, const std::vector<std::uint32_t>& tables, const std::string& name);
  void visitTable(std::uint32_t block, std::uint32_t table, const std::string& name);
  void visitExpressions(const Expressions& expressions, const Names& renamed, const std::string& name);
  void visitTableQuery(std::uint32_t query, const Names& names, const std::string& name);
  [[nodiscard]] bool isShared(std::uint32_t block, std::uint32_t table, const std::string& folded);
  [[nodiscard]] Has has(std::uint32_t block, std::uint32_t table, const std::string& folded);
  [[nodiscard]] static std::string keyOfAll(const Expressions& expressions, const Names& renamed,
                                            const std::string& folded);
  [[nodiscard]] Has expressionsHave(const Expressions& expressions, const Names& renamed,
                                    const std::string& folded);
  [[nodiscard]] Has queryHas(std::uint32_t query, const Names& names, const std::string& folded);
  [[nodiscard]] bool isHidden(const QueryColumn& star, const std::string& folded);
  void addSource(std::uint32_t object, const std::string& column);

  const Query& query_;
  HasColumn hasColumn_;
  std::vector<QueryObject> objects_;
  std::vector<std::vector<Table>> tables_;  // by block
  std::vector<std::unordered_multimap<std::string, std::uint32_t>> byAlias_;
  std::vector<std::unordered_map<std::string, std::uint32_t>> columns_;  // by block, made when asked for
  std::vector<bool> hasColumns_;
  std::vector<std::uint32_t> firstStar_;
  std::vector<std::unordered_map<std::string, Expressions>> expressions_;  // by query
  std::unordered_map<std::string, Expressions> temporaries_;
  std::unordered_map<std::string, Has> known_;  // whether many expressions together have a column
  // Made when asked for, as are the columns of blocks.
  std::unordered_map<const Names*, std::unordered_map<std::string, std::uint32_t>> places_;
  std::vector<std::unordered_map<std::string, std::vector<const QueryReference*>>> shared_;  // by block
  std::vector<std::uint32_t> scopes_;  // by query, the innermost around it that has expressions

  // Of one look-up.
  std::vector<const QueryPart*> parts_;
  std::vector<Target> targets_;
  std::unordered_set<const QueryPart*> seenParts_;
  std::unordered_set<std::string> seenTargets_;
  std::unordered_set<std::string> seenSources_;
  std::vector<QuerySource> sources_;
  std::size_t steps_ = 0;
  std::size_t maxSteps_;  // of all look-ups of one statement, in proportion to its length
};

}  // namespace tav
