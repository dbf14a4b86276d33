// An expression of a stored query of an Access file as SQLite reads it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "nuclide/jet/column_kind.h"
#include "nuclide/jet/query_error.h"

namespace kestrel::jet {

// Far above what Access itself allows, so that a damaged file cannot make a text without end.
inline constexpr std::size_t longestText = 65536;

// The kind of a column of the query's inputs, by the name of the input (empty where the expression
// gives none) and its own; Other where it is not known.
using KindOf = std::function<ColumnKind(std::string_view input, std::string_view column)>;

// The expression as a value: of a comparison, True is -1 as in Access. The text is built anew from
// what was understood, so that nothing of a stranger's text reaches SQLite but names, numbers and
// texts in their quotes. Throws QueryError, which names the sign or the word that has no
// counterpart or would answer something else there.
std::string valueText(const std::string& expression, const KindOf& kindOf);

// The expression as a condition of a join or a row.
std::string conditionText(const std::string& expression, const KindOf& kindOf);

}  // namespace kestrel::jet
