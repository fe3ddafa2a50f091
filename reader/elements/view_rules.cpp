// Data source views: what tables and columns say beyond their names, types and queries.

#include <array>

#include "reader/elements/element_rules.h"

namespace tav {
namespace {

using rule::item;
using rule::read;

constexpr std::array kRules{
    item("", ObjectKind::dataSourceView, IdSpace::view),
    // The schema is no element of a definition's own language: it is read on its own.
    read("Schema", Reading::known),
};

}  // namespace

constinit const ElementRules kViewRules{"DataSourceViews/DataSourceView", kRules};

}  // namespace tav
