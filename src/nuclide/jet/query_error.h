// The refusal of a stored query of an Access file.
#pragma once

#include <stdexcept>

namespace kestrel::jet {

// A query that has no SQLite counterpart; what() says why.
class QueryError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace kestrel::jet
