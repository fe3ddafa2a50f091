#pragma once

// The state and the steps of reading a SELECT. query_parser.cpp holds the walk over the tokens and what
// stands between brackets, query_clauses.cpp the clauses and the words that begin them.

#include <memory>

#include "framework/expression/query.h"
#include "framework/expression/query_words.h"

namespace tav {

/// A walk over the tokens with a stack of what is open: depth costs heap alone.
class QueryParser {
 public:
  QueryParser(Query& query, std::string_view text);

  void run();

 private:
  enum class Clause : std::uint8_t {
    none,
    expressions,
    columns,
    into,
    tables,
    joined,
    condition,
    others,
    tail
  };
  enum class Open : std::uint8_t {
    query,  ///< a statement, or a sub-query
    joins,  ///< tables between brackets
    bracket,
    window,  ///< behind OVER: words such as ROWS are no names
    names,   ///< new names of columns
    pivot,
    ignored,
  };
  enum class PivotPart : std::uint8_t { value, column, list };
  /// Where the columns that are named belong to.
  struct Sink {
    enum class Kind : std::uint8_t { others, column, condition, table };
    Kind kind = Kind::others;
    std::uint32_t block = 0;
    std::uint32_t index = 0;
  };
  struct Frame {
    Open open = Open::query;
    Clause clause = Clause::none;
    std::uint32_t query = kNoQuery;
    std::uint32_t block = kNoQuery;
    std::uint32_t parentBlock = kNoQuery;     // of blocks that begin here
    std::uint32_t outerCondition = kNoQuery;  // the condition around the sub-query
    Sink sink;
    bool value = false;        // a value ends here; among expressions: AS was read
    bool skips = false;        // what follows is no value, up to a comma or the end
    bool excepted = false;     // the next SELECT only takes rows away
    bool from = false;         // in FROM; in a bracket: that of a function which has a FROM of its own
    std::uint32_t tokens = 0;  // of the column that is being read
  };

  void step();
  void take();
  void finishLexer();
  bool nextStatement();
  void fail(std::string_view expected);
  [[nodiscard]] bool isWordToken() const noexcept { return token_.bare && isName(); }
  [[nodiscard]] bool isName() const noexcept {
    return token_.kind == Token::Kind::reference || token_.kind == Token::Kind::call;
  }
  [[nodiscard]] bool isOpenBracket() const noexcept { return token_.kind == Token::Kind::openBracket; }

  Frame& frame() { return frames_.back(); }
  QueryBlock& block() { return query_.blocks[frame().block]; }
  QueryColumn& column() { return block().columns.back(); }
  QueryTable& table() { return block().tables.back(); }
  QueryPart& part();
  [[nodiscard]] bool inClauses() { return frame().open <= Open::joins; }
  [[nodiscard]] bool inColumns() { return inClauses() && frame().clause == Clause::columns; }
  void touch();

  // Brackets.
  void open(bool rowsOnly = false);
  bool openInFrom();
  void openSubQuery(bool rowsOnly);
  void push(Open what);
  void close();
  void closeFrame();
  void closeToClauses();
  void skipBrackets();

  // Names and values.
  void name();
  void value();
  void startName();
  void extendName();
  void reference();
  void alias();
  void call();
  void operation();
  void behindAs();
  bool star();
  void comma();
  void dot();
  void newName();
  void pivotName();
  bool word(QueryWord what);

  // Clauses.
  bool clauseWord(QueryWord what);
  bool fromWord(QueryWord what);
  void begin(Clause clause);
  void select();
  void skipTop();
  void condition();
  void endColumn();
  void tableName();
  void tableAlias();
  void pivot();
  void systemTime();
  void expressionName();
  QueryTable& addTable(QueryTable::Kind kind);
  std::uint32_t addQuery(std::uint32_t parent);
  void startStatement();

  Query& query_;
  std::size_t base_ = 0;  // where the lexer's text begins in the source
  std::unique_ptr<Lexer> lexer_;
  Token token_;
  std::size_t lastEnd_ = 0;
  std::vector<Frame> frames_;
  std::size_t nameBegin_ = 0;  // of the last name
  bool afterName_ = false;     // it stands right before the token
  bool extends_ = false;       // a dot stands between: the name goes on
  bool unpivot_ = false;
  PivotPart pivotPart_ = PivotPart::value;
};

}  // namespace tav
