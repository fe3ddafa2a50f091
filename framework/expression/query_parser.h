#pragma once

// Reading statements: a machine whose states are those of query_states.h, whose table is that of
// query_transitions.cpp, and whose actions stand in query_statements.cpp, query_columns.cpp, query_tables.cpp
// and query_values.cpp, by the clause that they read.

#include <string>
#include <unordered_map>

#include "framework/expression/query.h"
#include "framework/expression/query_states.h"
#include "framework/expression/query_tokens.h"

namespace tav {

/// A walk over the tokens with a stack of what is open: depth costs heap alone.
class QueryParser {
 public:
  QueryParser(Query& query, std::string_view text);

  void run();

 private:
  using State = QueryState;
  using Sign = QuerySign;
  using Action = void (QueryParser::*)();

  /// What a sign does in a state. The next state is entered before the action runs, which may enter another
  /// one. An action that takes no token leaves it to the state that it enters.
  struct Transition {
    Action action = nullptr;
    State next = State::stay;
  };
  struct Rule {
    std::uint64_t states;  // sets of states and signs, a bit for each
    std::uint64_t signs;
    Transition transition;
  };
  static const Rule kRules[];
  static const Transition& transitionOf(State state, Sign sign) noexcept;

  /// Where the columns that are named belong to.
  struct Sink {
    enum class Kind : std::uint8_t { others, column, condition, table };
    Kind kind = Kind::others;
    std::uint32_t block = 0;
    std::uint32_t index = 0;
  };
  /// Which words among the arguments of a function are no names.
  enum class Arguments : std::uint8_t { plain, partLast, withFrom };
  struct Frame {
    enum class Kind : std::uint8_t {
      query,  ///< a statement, or a sub-query
      joins,  ///< tables between brackets
      bracket,
      caseOf,
    };
    Kind kind = Kind::query;
    State state = State::statement;
    Arguments arguments = Arguments::plain;
    std::uint32_t query = kNoQuery;
    std::uint32_t block = kNoQuery;
    std::uint32_t parentBlock = kNoQuery;     // of blocks that begin here
    std::uint32_t outerCondition = kNoQuery;  // the condition around the sub-query
    std::uint32_t nested = kNoQuery;          // the last sub-query in the bracket
    std::uint32_t renamed = kNoQuery;         // the star behind which columns get other names here
    std::uint32_t leftTables = 0;             // how many tables stand before the last join
    Sink sink;
    bool excepted = false;  // the SELECTs here, up to the next UNION, only take rows away,
    bool hidden = false;    // or all of them do
  };

  // The machine.
  void step();
  void take() { tokens_.take(); }
  void touchAndTake();
  void fail(std::string_view expected);
  Frame& frame() { return frames_.back(); }
  void enter(State state) { frame().state = state; }
  Frame& push(Frame::Kind kind, State state);
  Frame& pushQuery(std::uint32_t id);
  void closeFrame();
  void closeToClauses();
  void closeAll();
  [[nodiscard]] bool inClauses() { return frame().kind <= Frame::Kind::joins; }
  QueryBlock& block() { return query_.blocks[frame().block]; }
  QueryColumn& column() { return block().columns[frame().sink.index]; }
  QueryTable& table() { return block().tables.back(); }
  QueryPart& part();
  void touch();
  void skipBrackets(Action each);

  // Any state.
  void skip() { take(); }
  void unknown();
  void brace();
  void close();
  void recover();
  void openIgnored();
  void endStatement();

  // Statements.
  void startStatement();
  void finishStatement();
  void nextStatement();
  void openQuery();
  void startRows();
  void openRow();
  void needSelect();
  void rememberName();
  void tableVariable();
  void createdWord();
  void createdTable();
  void insertedTable();
  void otherRows();
  void forgetTarget();
  void fillTarget();
  void listNames(std::vector<std::string_view>& names);
  void newName();
  void expressionName();
  void openExpressionNames();
  void openExpression();
  std::uint32_t addQuery(std::uint32_t parent);
  std::uint32_t addBlock();

  // SELECT.
  void select();
  void nextSelect();
  void selectHead();
  void nextColumn();
  void endColumn();
  void star();
  bool qualifiedStar();
  void starWord();
  void alias();
  void columnName();
  void expectName();
  void equalSign();

  // The clauses.
  void begin();
  void endClause(State state);
  bool hasSelect();
  void from();
  void condition();
  void startCondition();
  void connect();
  void others();
  void window();
  void windowAs();
  void startClause();
  void intoName();
  void unite();
  void uniteBracket();
  void withWord();

  // FROM.
  QueryTable& addTable(QueryTable::Kind kind);
  void join();
  void tableName();
  void tableFunction();
  void openInFrom();
  void parameterTable();
  void openAfterTable();
  void tableAs();
  void tableAlias();
  void missingTable();
  void expectJoin();
  void tableWith();
  void tailInFrom();
  void past();
  void pastOperand();
  void hint();
  void property();
  void usingColumns();
  void usingName();
  void lateral();
  void lateralView();
  void viewAlias();
  void viewName();

  // PIVOT.
  void pivot();
  void openPivot();
  void pivotInput();
  void pivotSuffix();
  void pivotName();
  void pivotAlias();
  void unpivotValue();
  void unpivotName();

  // Values.
  void name();
  void nameOrCall();
  bool isNamedArgument();
  bool isNoName();
  void unexpectedName();
  void unexpectedInBracket();
  void windowName();
  bool shown();
  void call();
  void readArguments(std::string_view function);
  void value() { touchAndTake(); }
  void operation() { touchAndTake(); }
  void openBracket();
  void openValues(bool rowsOnly);
  void openCase();
  void closeCase();
  void leaveCase();
  void exists();
  void over();
  void collate();
  void zone();
  void interval();
  void parameter();
  void path();
  void castTo();
  void typeName();
  void direction();
  void fromInBracket();

  Query& query_;
  QueryTokens tokens_;
  std::vector<Frame> frames_;
  State before_ = State::statement;  // the state that the action at hand was found in
  bool gives_ = false;               // the main query is one whose rows are the result of the text

  // The table that the statement at hand fills, and its columns if they are named.
  std::string_view target_;
  std::vector<std::string_view> targetColumns_;
  bool creates_ = false;  // it makes it as well
  bool filled_ = false;   // its SELECT was read
  std::string_view lastName_;
  std::vector<std::string_view>* names_ = nullptr;  // where the names of a list go
  // The columns of the tables that the statements make, in order, as far as they are known.
  std::unordered_map<std::string, std::vector<std::string_view>> made_;
};

}  // namespace tav
