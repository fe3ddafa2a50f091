#pragma once

#include <functional>
#include <string>

namespace tav::test {

/// What a query of a database gives: the names of its columns and its rows, cells separated by bars; or the
/// error. Anything may be run, also what changes the database.
std::string ask(const std::string& database, const std::string& query);

/// Does something while another connection is writing to the database.
void whileLocked(const std::string& database, const std::function<void()>& action);

}  // namespace tav::test
