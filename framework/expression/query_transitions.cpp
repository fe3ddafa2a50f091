// The table of the machine that reads statements: what each sign does in each state.

#include <array>

#include "framework/expression/query_parser.h"

namespace tav {

namespace {

using State = QueryState;
using Sign = QuerySign;

/// A set of states or of signs.
using Set = std::uint64_t;

static_assert(kQueryStates <= 64 && kQuerySigns <= 64);

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
constexpr Set kSoft =
    kNames | kStatements |
    setOf(Sign::on, Sign::usingWord, Sign::join, Sign::joinKind, Sign::pivot, Sign::hint, Sign::over,
          Sign::shortSelect, Sign::zone, Sign::typed, Sign::interval, Sign::table, Sign::lateral);
constexpr Set kConstants = setOf(Sign::literal, Sign::string);
constexpr Set kOperations = setOf(Sign::operation, Sign::times, Sign::equal, Sign::distinct,
                                  Sign::wordOperation, Sign::values, Sign::casePart);

/// The rule of each sign in one state.
using Row = std::array<std::uint8_t, kQuerySigns>;

constexpr void fill(Row& row, Set signs, std::uint8_t rule) {
  for (std::size_t sign = 0; sign < kQuerySigns; ++sign)
    if ((signs >> sign & 1U) != 0) row[sign] = rule;
}

}  // namespace

// The general rules first: what stands further down overrules them.
constexpr QueryParser::Rule QueryParser::kRules[] = {
    {kAny, kAny, {&QueryParser::skip, State::stay}},
    {kAny, setOf(Sign::semicolon), {&QueryParser::endStatement, State::stay}},
    {kAny, setOf(Sign::openBracket), {&QueryParser::openIgnored, State::stay}},
    {kAny, setOf(Sign::closeBracket), {&QueryParser::close, State::stay}},
    {kAny, setOf(Sign::openBrace), {&QueryParser::brace, State::stay}},
    {kAny, setOf(Sign::unknown), {&QueryParser::unknown, State::stay}},
    {setOf(State::foreign), setOf(Sign::semicolon, Sign::unknown), {&QueryParser::skip, State::stay}},

    // Statements.
    {setOf(State::statement),
     kWords | kNames | setOf(Sign::caseWord, Sign::casePart, Sign::endWord),
     {&QueryParser::skip, State::other}},
    {kOther | kWith | setOf(State::statement, State::united),
     setOf(Sign::select),
     {&QueryParser::select, State::column}},
    {setOf(State::statement, State::united, State::other, State::expressionEnd),
     setOf(Sign::shortSelect),
     {&QueryParser::select, State::column}},
    {kOther | setOf(State::statement, State::united),
     setOf(Sign::with),
     {&QueryParser::skip, State::expression}},
    {setOf(State::statement, State::united, State::afterQuery, State::expressionEnd),
     setOf(Sign::openBracket),
     {&QueryParser::openQuery, State::afterQuery}},
    {setOf(State::statement, State::united, State::expressionEnd),
     setOf(Sign::values),
     {&QueryParser::startRows, State::rows}},
    {setOf(State::rows), setOf(Sign::openBracket), {&QueryParser::openRow, State::stay}},
    {setOf(State::statement, State::other, State::expressionEnd),
     setOf(Sign::insert),
     {&QueryParser::skip, State::inserted}},
    {setOf(State::statement, State::other), setOf(Sign::create), {&QueryParser::skip, State::created}},
    {setOf(State::other), kNames, {&QueryParser::rememberName, State::stay}},
    {setOf(State::other), setOf(Sign::table), {&QueryParser::tableVariable, State::stay}},
    {setOf(State::other), setOf(Sign::statement, Sign::values), {&QueryParser::otherRows, State::stay}},
    {setOf(State::created), setOf(Sign::name), {&QueryParser::createdWord, State::stay}},
    {setOf(State::created), setOf(Sign::table), {&QueryParser::skip, State::createdName}},
    {setOf(State::created), setOf(Sign::as), {&QueryParser::skip, State::other}},
    {setOf(State::createdName), kNames, {&QueryParser::createdTable, State::other}},
    {setOf(State::inserted), kNames, {&QueryParser::insertedTable, State::other}},

    // WITH.
    {kWith,
     kUnite | setOf(Sign::from, Sign::where, Sign::connect, Sign::group, Sign::order, Sign::into, Sign::join,
                    Sign::on),
     {&QueryParser::needSelect, State::stay}},
    {setOf(State::expression), kNames, {&QueryParser::expressionName, State::expressionNames}},
    {setOf(State::expressionNames),
     setOf(Sign::openBracket),
     {&QueryParser::openExpressionNames, State::stay}},
    {setOf(State::expressionNames), setOf(Sign::as), {&QueryParser::skip, State::expressionAs}},
    {setOf(State::expressionAs),
     setOf(Sign::openBracket),
     {&QueryParser::openExpression, State::expressionEnd}},
    {kWith, setOf(Sign::comma), {&QueryParser::skip, State::expression}},
    {setOf(State::expressionEnd), setOf(Sign::statement), {&QueryParser::otherRows, State::other}},

    // Values.
    {kOperandStates, kSoft, {&QueryParser::nameOrCall, State::toOperator}},
    {kOperandStates,
     kConstants | setOf(Sign::question, Sign::endWord),
     {&QueryParser::value, State::toOperator}},
    {kOperandStates,
     kOperations | setOf(Sign::typed, Sign::cast, Sign::index, Sign::dot),
     {&QueryParser::operation, State::toOperand}},
    {kOperandStates, setOf(Sign::colon, Sign::ampersand), {&QueryParser::parameter, State::toOperator}},
    {kOperandStates, setOf(Sign::interval), {&QueryParser::interval, State::toOperand}},
    {kOperatorStates, kSoft, {&QueryParser::unexpectedName, State::toOperator}},
    {kOperatorStates,
     kConstants | setOf(Sign::index, Sign::endWord),
     {&QueryParser::value, State::toOperator}},
    {kOperatorStates, kOperations | setOf(Sign::ampersand), {&QueryParser::operation, State::toOperand}},
    {kOperatorStates, setOf(Sign::question), {&QueryParser::unknown, State::stay}},
    {kOperatorStates, setOf(Sign::cast), {&QueryParser::castTo, State::toOperator}},
    {kOperatorStates, setOf(Sign::colon), {&QueryParser::path, State::toOperator}},
    {kOperatorStates, setOf(Sign::dot), {&QueryParser::property, State::toOperator}},
    {kOperatorStates, setOf(Sign::over), {&QueryParser::over, State::toOperator}},
    {kOperatorStates, setOf(Sign::zone), {&QueryParser::zone, State::toOperand}},
    {kOperandStates | kOperatorStates,
     setOf(Sign::openBracket),
     {&QueryParser::openBracket, State::toOperator}},
    {kOperandStates | kOperatorStates, setOf(Sign::caseWord), {&QueryParser::openCase, State::toOperator}},
    {kOperandStates | kOperatorStates, setOf(Sign::exists), {&QueryParser::exists, State::toOperator}},
    {kOperandStates | kOperatorStates, setOf(Sign::collate), {&QueryParser::collate, State::toOperator}},
    {kOperandStates | kOperatorStates, setOf(Sign::direction), {&QueryParser::direction, State::stay}},
    {kClause | kValues, setOf(Sign::comma), {&QueryParser::operation, State::toOperand}},

    // Values between brackets.
    {kBracket | kCase | setOf(State::type),
     kUnite |
         setOf(Sign::select, Sign::where, Sign::connect, Sign::group, Sign::window, Sign::into, Sign::join),
     {&QueryParser::recover, State::stay}},
    {kWindow,
     kUnite | setOf(Sign::select, Sign::from, Sign::where, Sign::connect, Sign::group, Sign::window,
                    Sign::into, Sign::join),
     {&QueryParser::recover, State::stay}},
    {kBracket | kCase | setOf(State::type),
     setOf(Sign::from),
     {&QueryParser::fromInBracket, State::toOperand}},
    {kValues,
     setOf(Sign::order, Sign::tail, Sign::with, Sign::on),
     {&QueryParser::operation, State::toOperand}},
    {setOf(State::bracketOperator, State::bracketQuery, State::caseOperator),
     kSoft & ~setOf(Sign::over, Sign::zone, Sign::on, Sign::join),
     {&QueryParser::unexpectedInBracket, State::stay}},
    {setOf(State::bracketOperator, State::bracketQuery),
     setOf(Sign::as, Sign::usingWord),
     {&QueryParser::skip, State::type}},
    {setOf(State::bracketQuery), kUnite, {&QueryParser::uniteBracket, State::stay}},
    {setOf(State::type), setOf(Sign::comma), {&QueryParser::skip, State::bracketOperand}},
    {kCase, setOf(Sign::endWord), {&QueryParser::closeCase, State::stay}},
    {kCase, setOf(Sign::closeBracket), {&QueryParser::leaveCase, State::stay}},
    {setOf(State::windowOperand), kNames, {&QueryParser::windowName, State::windowOperator}},
    {setOf(State::windowOperator), kNames, {&QueryParser::windowName, State::stay}},
    {setOf(State::names), kWords | kNames, {&QueryParser::newName, State::namesRest}},
    {setOf(State::namesRest), setOf(Sign::comma), {&QueryParser::skip, State::names}},
    {setOf(State::usingNames), kWords | kNames, {&QueryParser::usingName, State::stay}},

    // Columns.
    {kColumns, setOf(Sign::comma), {&QueryParser::nextColumn, State::column}},
    {setOf(State::column),
     kSoft & ~setOf(Sign::call, Sign::typed, Sign::interval),
     {&QueryParser::nameOrCall, State::columnName}},
    {setOf(State::column), setOf(Sign::string), {&QueryParser::value, State::columnName}},
    {setOf(State::column), setOf(Sign::times), {&QueryParser::star, State::columnStar}},
    {setOf(State::columnName), setOf(Sign::equal), {&QueryParser::equalSign, State::columnOperand}},
    {kNamed,
     (kSoft & ~setOf(Sign::call, Sign::over, Sign::zone)) | setOf(Sign::string),
     {&QueryParser::alias, State::columnEnd}},
    {setOf(State::columnStar), kNames | setOf(Sign::except), {&QueryParser::starWord, State::stay}},
    {kColumns, setOf(Sign::as), {&QueryParser::skip, State::columnAlias}},
    {setOf(State::columnAlias),
     kAny & ~setOf(Sign::closeBracket, Sign::semicolon, Sign::comma),
     {&QueryParser::expectName, State::columnOperator}},
    {setOf(State::columnAlias),
     kSoft |
         setOf(Sign::string, Sign::values, Sign::exists, Sign::wordOperation, Sign::direction, Sign::tail),
     {&QueryParser::columnName, State::columnEnd}},

    // The clauses.
    {kSelect, setOf(Sign::from), {&QueryParser::from, State::table}},
    {kSelect, setOf(Sign::where), {&QueryParser::condition, State::clauseOperand}},
    {kSelect, setOf(Sign::connect), {&QueryParser::connect, State::clauseOperand}},
    {kSelect | setOf(State::afterQuery, State::rows),
     setOf(Sign::group, Sign::order),
     {&QueryParser::others, State::clauseOperand}},
    {kSelect, setOf(Sign::window), {&QueryParser::window, State::clauseOperator}},
    {setOf(State::clauseOperator), setOf(Sign::as), {&QueryParser::windowAs, State::stay}},
    {(kSelect & ~setOf(State::columnStar)) | setOf(State::afterQuery, State::rows),
     kUnite,
     {&QueryParser::unite, State::united}},
    {setOf(State::columnStar), setOf(Sign::unite, Sign::intersect), {&QueryParser::unite, State::united}},
    {kSelect, setOf(Sign::into), {&QueryParser::startClause, State::into}},
    {setOf(State::into), kNames, {&QueryParser::intoName, State::intoEnd}},
    {(kSelect & ~setOf(State::columnAlias)) | setOf(State::afterQuery, State::rows),
     setOf(Sign::tail),
     {&QueryParser::startClause, State::tail}},
    {kSelect | setOf(State::afterQuery, State::rows),
     setOf(Sign::select),
     {&QueryParser::nextSelect, State::column}},
    {kSelect, setOf(Sign::with), {&QueryParser::withWord, State::stay}},
    {kComplete,
     setOf(Sign::casePart, Sign::endWord) | kStatements,
     {&QueryParser::nextStatement, State::stay}},

    // FROM.
    {setOf(State::table), kSoft, {&QueryParser::tableName, State::tableEnd}},
    {setOf(State::table),
     setOf(Sign::string, Sign::colon, Sign::ampersand, Sign::question),
     {&QueryParser::parameterTable, State::tableEnd}},
    {setOf(State::table), setOf(Sign::openBracket), {&QueryParser::openInFrom, State::tableEnd}},
    {setOf(State::table), setOf(Sign::table), {&QueryParser::tableFunction, State::tableEnd}},
    {setOf(State::table), setOf(Sign::lateral), {&QueryParser::skip, State::stay}},
    {setOf(State::table),
     setOf(Sign::comma, Sign::join, Sign::joinKind),
     {&QueryParser::missingTable, State::stay}},
    {setOf(State::tableEnd), kSoft & ~kStatements, {&QueryParser::tableAlias, State::joined}},
    {setOf(State::tableEnd), setOf(Sign::as), {&QueryParser::tableAs, State::tableAlias}},
    {setOf(State::tableAlias), kSoft | setOf(Sign::string), {&QueryParser::tableAlias, State::joined}},
    {setOf(State::joined, State::joining), kSoft & ~kStatements, {&QueryParser::expectJoin, State::stay}},
    {setOf(State::tableEnd, State::joined),
     setOf(Sign::openBracket),
     {&QueryParser::openAfterTable, State::stay}},
    {setOf(State::tableEnd, State::joined), setOf(Sign::with), {&QueryParser::tableWith, State::stay}},
    {setOf(State::tableEnd, State::joined), setOf(Sign::tail), {&QueryParser::tailInFrom, State::tail}},
    {setOf(State::tableEnd, State::joined), setOf(Sign::pivot), {&QueryParser::pivot, State::tableEnd}},
    {setOf(State::tableEnd, State::joined), setOf(Sign::dot), {&QueryParser::property, State::stay}},
    {setOf(State::tableEnd, State::joined) | kOn, setOf(Sign::hint), {&QueryParser::hint, State::stay}},
    {setOf(State::viewAlias), kNames, {&QueryParser::viewAlias, State::stay}},
    {setOf(State::viewAlias), setOf(Sign::as), {&QueryParser::skip, State::viewNames}},
    {setOf(State::viewNames), kNames, {&QueryParser::viewName, State::stay}},
    {kBehindTable | kOn, setOf(Sign::comma), {&QueryParser::join, State::table}},
    {kBehindTable | kOn | setOf(State::joining), setOf(Sign::join), {&QueryParser::join, State::table}},
    {kBehindTable | kOn | setOf(State::joining),
     setOf(Sign::joinKind),
     {&QueryParser::startClause, State::joining}},
    {kBehindTable | kOn, setOf(Sign::lateral), {&QueryParser::lateral, State::table}},
    {kBehindTable | kOn | setOf(State::table, State::joining),
     setOf(Sign::on),
     {&QueryParser::condition, State::onOperand}},
    {kBehindTable | setOf(State::onOperator),
     setOf(Sign::usingWord),
     {&QueryParser::usingColumns, State::onOperator}},

    // PIVOT and UNPIVOT.
    {setOf(State::pivotValue), setOf(Sign::openBracket), {&QueryParser::openPivot, State::pivotValueEnd}},
    {setOf(State::pivotInput, State::pivotColumn, State::pivotIn, State::unpivotValue, State::unpivotColumn,
           State::unpivotIn, State::unpivotInputs),
     setOf(Sign::openBracket),
     {&QueryParser::openPivot, State::stay}},
    {setOf(State::pivotInput, State::pivotColumn, State::unpivotInputs),
     kSoft & ~setOf(Sign::call),
     {&QueryParser::pivotInput, State::stay}},
    {setOf(State::pivotValueEnd), setOf(Sign::name), {&QueryParser::pivotSuffix, State::stay}},
    {setOf(State::pivotValueEnd), setOf(Sign::comma), {&QueryParser::skip, State::pivotValue}},
    {setOf(State::pivotValue, State::pivotValueEnd),
     setOf(Sign::tail),
     {&QueryParser::skip, State::pivotColumn}},
    {setOf(State::pivotColumn), setOf(Sign::wordOperation), {&QueryParser::skip, State::pivotIn}},
    {setOf(State::pivotNames), kConstants | setOf(Sign::name), {&QueryParser::pivotName, State::stay}},
    {setOf(State::pivotNames), setOf(Sign::as), {&QueryParser::skip, State::pivotAlias}},
    {setOf(State::pivotAlias), kConstants | setOf(Sign::name), {&QueryParser::pivotAlias, State::pivotNames}},
    {setOf(State::unpivotValue), setOf(Sign::name), {&QueryParser::unpivotValue, State::stay}},
    {setOf(State::unpivotValue), setOf(Sign::tail), {&QueryParser::skip, State::unpivotColumn}},
    {setOf(State::unpivotColumn), setOf(Sign::name), {&QueryParser::unpivotName, State::stay}},
    {setOf(State::unpivotColumn), setOf(Sign::wordOperation), {&QueryParser::skip, State::unpivotIn}},
    {setOf(State::unpivotInputs), setOf(Sign::as), {&QueryParser::skip, State::unpivotAlias}},
    {setOf(State::unpivotAlias), kConstants | setOf(Sign::name), {&QueryParser::skip, State::unpivotInputs}},
};

const QueryParser::Transition& QueryParser::transitionOf(State state, Sign sign) noexcept {
  static_assert(std::size(kRules) <= 256);
  static constexpr auto kTable = [] {
    std::array<Row, kQueryStates> table{};
    for (std::size_t rule = 0; rule < std::size(kRules); ++rule) {
      for (std::size_t from = 0; from < kQueryStates; ++from)
        if ((kRules[rule].states >> from & 1U) != 0)
          fill(table[from], kRules[rule].signs, static_cast<std::uint8_t>(rule));
    }
    return table;
  }();
  return kRules[kTable[static_cast<std::size_t>(state)][static_cast<std::size_t>(sign)]].transition;
}

}  // namespace tav
