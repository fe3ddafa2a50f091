#pragma once

namespace tav {

/// Empties a set or map of the standard library that is used again and again. Its clear() passes over all the
/// room that it ever took, and so does assigning {}: after one large use all others would pay for that.
template <class Table> void emptyTable(Table& table) {
  if (table.bucket_count() > 1024)
    table = Table();
  else
    table.clear();
}

}  // namespace tav
