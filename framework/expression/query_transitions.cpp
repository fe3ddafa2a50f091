// The table of the machine that reads statements: what each sign does in each state.

#include <array>

#include "framework/expression/query_parser.h"

namespace tav {

namespace {

using State = QueryState;
using Sign = QuerySign;

/// A set of states or of signs.
using Set = std::uint64_t;

constexpr std::size_t kStates = static_cast<std::size_t>(State::count_);
constexpr std::size_t kSigns = static_cast<std::size_t>(Sign::count_);
static_assert(kStates <= 64 && kSigns <= 64);

template <class... Values> constexpr Set setOf(Values... values) {
  return ((Set{1} << static_cast<unsigned>(values)) | ...);
}

constexpr Set kAny = ~Set{0};

// States.
constexpr Set kColumns = setOf(State::column, State::columnName, State::columnOperand, State::columnOperator,
                               State::columnStar, State::columnAlias, State::columnEnd);
constexpr Set kOn = setOf(State::onOperand, State::onOperator);
constexpr Set kClause = setOf(State::clauseOperand, State::clauseOperator);
constexpr Set kBracket = setOf(State::bracketOperand, State::bracketOperator, State::bracketQuery);
constexpr Set kCase = setOf(State::caseOperand, State::caseOperator);
constexpr Set kWindow = setOf(State::windowOperand, State::windowOperator);
constexpr Set kBehindTable = setOf(State::tableEnd, State::joined, State::viewAlias, State::viewNames);
constexpr Set kFrom = setOf(State::table, State::tableAlias, State::joining) | kBehindTable | kOn;
constexpr Set kSelect = kColumns | kFrom | kClause | setOf(State::into, State::intoEnd, State::tail);
constexpr Set kWith =
    setOf(State::expression, State::expressionNames, State::expressionAs, State::expressionEnd);
constexpr Set kOther = setOf(State::other, State::created, State::createdName, State::inserted);
constexpr Set kValues = kBracket | kCase | kWindow;
constexpr Set kOperandStates =
    setOf(State::column, State::columnOperand, State::onOperand, State::clauseOperand, State::bracketOperand,
          State::caseOperand, State::windowOperand);
constexpr Set kOperatorStates =
    setOf(State::columnName, State::columnOperator, State::columnStar, State::columnEnd, State::onOperator,
          State::clauseOperator, State::bracketOperator, State::bracketQuery, State::caseOperator,
          State::windowOperator);
constexpr Set kNamed = setOf(State::columnName, State::columnOperator);
/// Where a statement may be at its end.
constexpr Set kComplete = (kOperatorStates & ~kValues) | kBehindTable |
                          setOf(State::tail, State::intoEnd, State::rows, State::afterQuery);

// Signs.
constexpr Set kWords = ~(setOf(Sign::select) - 1);
constexpr Set kNames = setOf(Sign::name, Sign::call);
constexpr Set kUnite = setOf(Sign::unite, Sign::intersect, Sign::except);
constexpr Set kStatements = setOf(Sign::statement, Sign::insert, Sign::create);
/// Words that are names where they mean nothing.
constexpr Set kSoft = kNames | kStatements |
                      setOf(Sign::on, Sign::usingWord, Sign::join, Sign::joinKind, Sign::pivot, Sign::hint,
                            Sign::over, Sign::zone, Sign::typed, Sign::interval, Sign::table, Sign::lateral);
constexpr Set kConstants = setOf(Sign::literal, Sign::string);
constexpr Set kOperations = setOf(Sign::operation, Sign::times, Sign::equal, Sign::distinct,
                                  Sign::wordOperation, Sign::values, Sign::casePart);

}  // namespace

const QueryParser::Transition& QueryParser::transitionOf(State state, Sign sign) noexcept {
  using P = QueryParser;
  struct Rule {
    Set states;
    Set signs;
    Transition transition;
  };
  // The general rules first: what stands further down overrules them.
  static constexpr Rule kRules[] = {
      {kAny, kAny, {&P::skip, State::stay}},
      {kAny, setOf(Sign::semicolon), {&P::endStatement, State::stay}},
      {kAny, setOf(Sign::openBracket), {&P::openIgnored, State::stay}},
      {kAny, setOf(Sign::closeBracket), {&P::close, State::stay}},
      {kAny, setOf(Sign::openBrace), {&P::brace, State::stay}},
      {kAny, setOf(Sign::unknown), {&P::unknown, State::stay}},
      {setOf(State::foreign), setOf(Sign::semicolon, Sign::unknown), {&P::skip, State::stay}},

      // Statements.
      {setOf(State::statement),
       kWords | kNames | setOf(Sign::caseWord, Sign::casePart, Sign::endWord),
       {&P::skip, State::other}},
      {kOther | kWith | setOf(State::statement, State::united),
       setOf(Sign::select),
       {&P::select, State::column}},
      {kOther | setOf(State::statement, State::united), setOf(Sign::with), {&P::skip, State::expression}},
      {setOf(State::statement, State::united, State::afterQuery, State::expressionEnd),
       setOf(Sign::openBracket),
       {&P::openQuery, State::afterQuery}},
      {setOf(State::statement, State::united, State::expressionEnd),
       setOf(Sign::values),
       {&P::startRows, State::rows}},
      {setOf(State::rows), setOf(Sign::openBracket), {&P::openRow, State::stay}},
      {setOf(State::statement, State::other, State::expressionEnd),
       setOf(Sign::insert),
       {&P::skip, State::inserted}},
      {setOf(State::statement, State::other), setOf(Sign::create), {&P::skip, State::created}},
      {setOf(State::other), kNames, {&P::rememberName, State::stay}},
      {setOf(State::other), setOf(Sign::table), {&P::tableVariable, State::stay}},
      {setOf(State::other), setOf(Sign::statement, Sign::values), {&P::otherRows, State::stay}},
      {setOf(State::created), setOf(Sign::name), {&P::createdWord, State::stay}},
      {setOf(State::created), setOf(Sign::table), {&P::skip, State::createdName}},
      {setOf(State::created), setOf(Sign::as), {&P::skip, State::other}},
      {setOf(State::createdName), kNames, {&P::createdTable, State::other}},
      {setOf(State::inserted), kNames, {&P::insertedTable, State::other}},

      // WITH.
      {kWith,
       kUnite | setOf(Sign::from, Sign::where, Sign::connect, Sign::group, Sign::order, Sign::into,
                      Sign::join, Sign::on),
       {&P::needSelect, State::stay}},
      {setOf(State::expression), kNames, {&P::expressionName, State::expressionNames}},
      {setOf(State::expressionNames), setOf(Sign::openBracket), {&P::openExpressionNames, State::stay}},
      {setOf(State::expressionNames), setOf(Sign::as), {&P::skip, State::expressionAs}},
      {setOf(State::expressionAs), setOf(Sign::openBracket), {&P::openExpression, State::expressionEnd}},
      {kWith, setOf(Sign::comma), {&P::skip, State::expression}},
      {setOf(State::expressionEnd), setOf(Sign::statement), {&P::otherRows, State::other}},

      // Values.
      {kOperandStates, kSoft, {&P::nameOrCall, State::toOperator}},
      {kOperandStates, kConstants | setOf(Sign::question, Sign::endWord), {&P::value, State::toOperator}},
      {kOperandStates,
       kOperations | setOf(Sign::typed, Sign::cast, Sign::index, Sign::dot),
       {&P::operation, State::toOperand}},
      {kOperandStates, setOf(Sign::colon, Sign::ampersand), {&P::parameter, State::toOperator}},
      {kOperandStates, setOf(Sign::interval), {&P::interval, State::toOperand}},
      {kOperatorStates, kSoft, {&P::unexpectedName, State::toOperator}},
      {kOperatorStates, kConstants | setOf(Sign::index, Sign::endWord), {&P::value, State::toOperator}},
      {kOperatorStates, kOperations | setOf(Sign::ampersand), {&P::operation, State::toOperand}},
      {kOperatorStates, setOf(Sign::question), {&P::unknown, State::stay}},
      {kOperatorStates, setOf(Sign::cast), {&P::castTo, State::toOperator}},
      {kOperatorStates, setOf(Sign::colon), {&P::path, State::toOperator}},
      {kOperatorStates, setOf(Sign::dot), {&P::property, State::toOperator}},
      {kOperatorStates, setOf(Sign::over), {&P::over, State::toOperator}},
      {kOperatorStates, setOf(Sign::zone), {&P::zone, State::toOperand}},
      {kOperandStates | kOperatorStates, setOf(Sign::openBracket), {&P::openBracket, State::toOperator}},
      {kOperandStates | kOperatorStates, setOf(Sign::caseWord), {&P::openCase, State::toOperator}},
      {kOperandStates | kOperatorStates, setOf(Sign::exists), {&P::exists, State::toOperator}},
      {kOperandStates | kOperatorStates, setOf(Sign::collate), {&P::collate, State::toOperator}},
      {kOperandStates | kOperatorStates, setOf(Sign::direction), {&P::direction, State::stay}},
      {kClause | kValues, setOf(Sign::comma), {&P::operation, State::toOperand}},

      // Values between brackets.
      {kBracket | kCase | setOf(State::type),
       kUnite |
           setOf(Sign::select, Sign::where, Sign::connect, Sign::group, Sign::window, Sign::into, Sign::join),
       {&P::recover, State::stay}},
      {kWindow,
       kUnite | setOf(Sign::select, Sign::from, Sign::where, Sign::connect, Sign::group, Sign::window,
                      Sign::into, Sign::join),
       {&P::recover, State::stay}},
      {kBracket | kCase | setOf(State::type), setOf(Sign::from), {&P::fromInBracket, State::toOperand}},
      {kValues, setOf(Sign::order, Sign::tail, Sign::with, Sign::on), {&P::operation, State::toOperand}},
      {setOf(State::bracketOperator, State::bracketQuery, State::caseOperator),
       kSoft & ~setOf(Sign::over, Sign::zone, Sign::on, Sign::join),
       {&P::unexpectedInBracket, State::stay}},
      {setOf(State::bracketOperator, State::bracketQuery),
       setOf(Sign::as, Sign::usingWord),
       {&P::skip, State::type}},
      {setOf(State::bracketQuery), kUnite, {&P::uniteBracket, State::stay}},
      {setOf(State::type), setOf(Sign::comma), {&P::skip, State::bracketOperand}},
      {kCase, setOf(Sign::endWord), {&P::closeCase, State::stay}},
      {kCase, setOf(Sign::closeBracket), {&P::leaveCase, State::stay}},
      {setOf(State::windowOperand), kNames, {&P::windowName, State::windowOperator}},
      {setOf(State::windowOperator), kNames, {&P::windowName, State::stay}},
      {setOf(State::names), kWords | kNames, {&P::newName, State::namesRest}},
      {setOf(State::namesRest), setOf(Sign::comma), {&P::skip, State::names}},
      {setOf(State::usingNames), kWords | kNames, {&P::usingName, State::stay}},

      // Columns.
      {kColumns, setOf(Sign::comma), {&P::nextColumn, State::column}},
      {setOf(State::column),
       kSoft & ~setOf(Sign::call, Sign::typed, Sign::interval),
       {&P::nameOrCall, State::columnName}},
      {setOf(State::column), setOf(Sign::string), {&P::value, State::columnName}},
      {setOf(State::column), setOf(Sign::times), {&P::star, State::columnStar}},
      {setOf(State::columnName), setOf(Sign::equal), {&P::equalSign, State::columnOperand}},
      {kNamed,
       (kSoft & ~setOf(Sign::call, Sign::over, Sign::zone)) | setOf(Sign::string),
       {&P::alias, State::columnEnd}},
      {setOf(State::columnStar), kNames | setOf(Sign::except), {&P::starWord, State::stay}},
      {kColumns, setOf(Sign::as), {&P::skip, State::columnAlias}},
      {setOf(State::columnAlias),
       kAny & ~setOf(Sign::closeBracket, Sign::semicolon, Sign::comma),
       {&P::expectName, State::columnOperator}},
      {setOf(State::columnAlias),
       kSoft |
           setOf(Sign::string, Sign::values, Sign::exists, Sign::wordOperation, Sign::direction, Sign::tail),
       {&P::columnName, State::columnEnd}},

      // The clauses.
      {kSelect, setOf(Sign::from), {&P::from, State::table}},
      {kSelect, setOf(Sign::where), {&P::condition, State::clauseOperand}},
      {kSelect, setOf(Sign::connect), {&P::connect, State::clauseOperand}},
      {kSelect | setOf(State::afterQuery, State::rows),
       setOf(Sign::group, Sign::order),
       {&P::others, State::clauseOperand}},
      {kSelect, setOf(Sign::window), {&P::window, State::clauseOperator}},
      {setOf(State::clauseOperator), setOf(Sign::as), {&P::windowAs, State::stay}},
      {(kSelect & ~setOf(State::columnStar)) | setOf(State::afterQuery, State::rows),
       kUnite,
       {&P::unite, State::united}},
      {setOf(State::columnStar), setOf(Sign::unite, Sign::intersect), {&P::unite, State::united}},
      {kSelect, setOf(Sign::into), {&P::startClause, State::into}},
      {setOf(State::into), kNames, {&P::intoName, State::intoEnd}},
      {(kSelect & ~setOf(State::columnAlias)) | setOf(State::afterQuery, State::rows),
       setOf(Sign::tail),
       {&P::startClause, State::tail}},
      {kSelect | setOf(State::afterQuery, State::rows), setOf(Sign::select), {&P::nextSelect, State::column}},
      {kSelect, setOf(Sign::with), {&P::withWord, State::stay}},
      {kComplete, setOf(Sign::casePart, Sign::endWord) | kStatements, {&P::nextStatement, State::stay}},

      // FROM.
      {setOf(State::table), kSoft, {&P::tableName, State::tableEnd}},
      {setOf(State::table),
       setOf(Sign::string, Sign::colon, Sign::ampersand, Sign::question),
       {&P::parameterTable, State::tableEnd}},
      {setOf(State::table), setOf(Sign::openBracket), {&P::openInFrom, State::tableEnd}},
      {setOf(State::table), setOf(Sign::table), {&P::tableFunction, State::tableEnd}},
      {setOf(State::table), setOf(Sign::lateral), {&P::skip, State::stay}},
      {setOf(State::table), setOf(Sign::comma, Sign::join, Sign::joinKind), {&P::missingTable, State::stay}},
      {setOf(State::tableEnd), kSoft & ~kStatements, {&P::tableAlias, State::joined}},
      {setOf(State::tableEnd), setOf(Sign::as), {&P::tableAs, State::tableAlias}},
      {setOf(State::tableAlias), kSoft | setOf(Sign::string), {&P::tableAlias, State::joined}},
      {setOf(State::joined, State::joining), kSoft & ~kStatements, {&P::expectJoin, State::stay}},
      {setOf(State::tableEnd, State::joined), setOf(Sign::openBracket), {&P::openAfterTable, State::stay}},
      {setOf(State::tableEnd, State::joined), setOf(Sign::with), {&P::tableWith, State::stay}},
      {setOf(State::tableEnd, State::joined), setOf(Sign::tail), {&P::tailInFrom, State::tail}},
      {setOf(State::tableEnd, State::joined), setOf(Sign::pivot), {&P::pivot, State::tableEnd}},
      {setOf(State::tableEnd, State::joined), setOf(Sign::dot), {&P::property, State::stay}},
      {setOf(State::tableEnd, State::joined) | kOn, setOf(Sign::hint), {&P::hint, State::stay}},
      {setOf(State::viewAlias), kNames, {&P::viewAlias, State::stay}},
      {setOf(State::viewAlias), setOf(Sign::as), {&P::skip, State::viewNames}},
      {setOf(State::viewNames), kNames, {&P::viewName, State::stay}},
      {kBehindTable | kOn, setOf(Sign::comma), {&P::join, State::table}},
      {kBehindTable | kOn | setOf(State::joining), setOf(Sign::join), {&P::join, State::table}},
      {kBehindTable | kOn | setOf(State::joining), setOf(Sign::joinKind), {&P::startClause, State::joining}},
      {kBehindTable | kOn, setOf(Sign::lateral), {&P::lateral, State::table}},
      {kBehindTable | kOn | setOf(State::table, State::joining),
       setOf(Sign::on),
       {&P::condition, State::onOperand}},
      {kBehindTable | setOf(State::onOperator),
       setOf(Sign::usingWord),
       {&P::usingColumns, State::onOperator}},

      // PIVOT and UNPIVOT.
      {setOf(State::pivotValue), setOf(Sign::openBracket), {&P::openPivot, State::pivotValueEnd}},
      {setOf(State::pivotInput, State::pivotColumn, State::pivotIn, State::unpivotValue, State::unpivotColumn,
             State::unpivotIn, State::unpivotInputs),
       setOf(Sign::openBracket),
       {&P::openPivot, State::stay}},
      {setOf(State::pivotInput, State::pivotColumn, State::unpivotInputs),
       kSoft & ~setOf(Sign::call),
       {&P::pivotInput, State::stay}},
      {setOf(State::pivotValueEnd), setOf(Sign::name), {&P::pivotSuffix, State::stay}},
      {setOf(State::pivotValueEnd), setOf(Sign::comma), {&P::skip, State::pivotValue}},
      {setOf(State::pivotValue, State::pivotValueEnd), setOf(Sign::tail), {&P::skip, State::pivotColumn}},
      {setOf(State::pivotColumn), setOf(Sign::wordOperation), {&P::skip, State::pivotIn}},
      {setOf(State::pivotNames), kConstants | setOf(Sign::name), {&P::pivotName, State::stay}},
      {setOf(State::pivotNames), setOf(Sign::as), {&P::skip, State::pivotAlias}},
      {setOf(State::pivotAlias), kConstants | setOf(Sign::name), {&P::pivotAlias, State::pivotNames}},
      {setOf(State::unpivotValue), setOf(Sign::name), {&P::unpivotValue, State::stay}},
      {setOf(State::unpivotValue), setOf(Sign::tail), {&P::skip, State::unpivotColumn}},
      {setOf(State::unpivotColumn), setOf(Sign::name), {&P::unpivotName, State::stay}},
      {setOf(State::unpivotColumn), setOf(Sign::wordOperation), {&P::skip, State::unpivotIn}},
      {setOf(State::unpivotInputs), setOf(Sign::as), {&P::skip, State::unpivotAlias}},
      {setOf(State::unpivotAlias), kConstants | setOf(Sign::name), {&P::skip, State::unpivotInputs}},
  };
  static_assert(std::size(kRules) <= 256);

  using Row = std::array<std::uint8_t, kSigns>;
  static constexpr auto kTable = [] {
    std::array<Row, kStates> table{};
    for (std::size_t rule = 0; rule < std::size(kRules); ++rule)
      for (std::size_t s = 0; s < kStates; ++s)
        for (std::size_t t = 0; (kRules[rule].states >> s & 1U) != 0 && t < kSigns; ++t)
          if ((kRules[rule].signs >> t & 1U) != 0) table[s][t] = static_cast<std::uint8_t>(rule);
    return table;
  }();
  return kRules[kTable[static_cast<std::size_t>(state)][static_cast<std::size_t>(sign)]].transition;
}

}  // namespace tav
