// A query stored in an Access file, which holds no text of it but its parts, as the text of an
// SQLite view.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kestrel::jet {

// A query that has no SQLite counterpart; what() says why.
class QueryError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

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

// The SELECT statement. Throws QueryError.
std::string selectText(const StoredQuery& query);

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
