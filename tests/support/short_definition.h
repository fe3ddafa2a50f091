#pragma once

#include <string>

namespace tav::test {

/// A definition of what corpora write short: View, Table and Column for a data source view and its schema, A
/// for an attribute with the column of its key, M for a measure with its aggregate function and column.
std::string expanded(std::string text);

}  // namespace tav::test
