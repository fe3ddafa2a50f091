// Any bytes are a script of MDX: statements whose texts lie in it, each in a scope that was opened before.

#include <functional>

#include "expressions/script_statements.h"
#include "fuzz/require.h"

using tav::fuzz::require;

namespace {

bool liesIn(std::string_view script, std::string_view part) {
  if (part.empty()) return true;
  const std::less_equal<const char*> notBehind;
  return notBehind(script.data(), part.data()) &&
         notBehind(part.data() + part.size(), script.data() + script.size());
}

void checkTexts(std::string_view script, const tav::ScriptStatement& statement) {
  for (const std::string_view part :
       {statement.text, statement.name, statement.range, statement.expression, statement.condition})
    require(liesIn(script, part), "a statement has a text from outside the script");
  for (const auto& [name, value] : statement.properties)
    require(liesIn(script, name) && liesIn(script, value), "a property is from outside the script");
  if (statement.fault) require(statement.fault.offset <= script.size(), "a fault is behind the script's end");
}

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view script(reinterpret_cast<const char*>(data), size);
  const std::vector<tav::ScriptStatement> statements = tav::parseScript(script);
  for (std::size_t i = 0; i < statements.size(); ++i) {
    const tav::ScriptStatement& statement = statements[i];
    checkTexts(script, statement);
    if (statement.scope == tav::ScriptStatement::kNoScope) continue;
    require(statement.scope < i, "a statement is in a scope that comes behind it");
    require(statements[statement.scope].kind == tav::StatementKind::scope,
            "a statement is in what is no scope");
  }
  return 0;
}
