// A query stored in an Access file, which holds no text of it but its parts, as the text of an
// SQLite view.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "nuclide/jet/expression.h"

namespace kestrel::jet {

// One row of the file's query table.
struct QueryRow {
    int attribute = 0;  // what the row is
    std::string order;  // where it belongs among its like: bytes, most significant first
    std::optional<std::string> name1;
    std::optional<std::string> name2;
    std::optional<std::string> expression;
    std::optional<int> flag;
};

struct StoredQuery {
    std::string name;
    std::vector<QueryRow> rows;  // in any order
};

// The SELECT statement. `kindOfTable` tells the kind of a column by the name of its table, Other
// for those of a query. Throws QueryError.
std::string selectText(const StoredQuery& query, const KindOf& kindOfTable = {});

// The tables or queries that it reads, with the names under which its expressions know them.
struct QueryInput {
    std::string table;
    std::string alias;
};
std::vector<QueryInput> inputsOf(const StoredQuery& query);

// Whether a join or the first sort key of the query names this column of an input.
bool joinsOrSortsBy(const StoredQuery& query, const std::string& alias, const std::string& column);

// An SQL identifier.
std::string quotedName(const std::string& name);

}  // namespace kestrel::jet
