#pragma once

namespace tav {

/// The languages that the library reads.
enum class ExpressionLanguage { sql, mdx };

}  // namespace tav
