// Tables of an Access (Jet) file, read through libmdb. That library trusts its input: what is
// declared here belongs in a process that may crash.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "nuclide/jet/column_kind.h"

namespace kestrel::jet {

// A file or table that cannot be read; what() says why, in words for the user.
class JetError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class JetFile {
  public:
    // Throws JetError.
    explicit JetFile(const std::string& path);
    ~JetFile();
    JetFile(const JetFile&) = delete;
    JetFile& operator=(const JetFile&) = delete;

    bool hasPassword() const;

    struct Handle;
    Handle& handle() { return *handle_; }

  private:
    std::unique_ptr<Handle> handle_;
};

struct Column {
    std::string name;
    ColumnKind kind;
};

// The rows of one table, in the order in which they lie. Only one table can be read at a time.
class JetTable {
  public:
    // `page` is where its definition lies. Throws JetError.
    JetTable(JetFile& file, const std::string& name, std::uint32_t page);
    ~JetTable();
    JetTable(const JetTable&) = delete;
    JetTable& operator=(const JetTable&) = delete;

    const std::vector<Column>& columns() const { return columns_; }
    // Index of a column by its name in any letter case. Throws JetError when there is none.
    std::size_t column(std::string_view name) const;

    // The next row; false behind the last. Throws JetError when the file holds fewer rows than it
    // declares.
    bool next();

    // Values of the present row; nothing for null. Texts are UTF-8, dates "yyyy-mm-dd".
    std::optional<std::int64_t> whole(std::size_t column) const;
    std::optional<double> real(std::size_t column) const;
    std::optional<std::string> text(std::size_t column) const;

  private:
    struct Definition;
    std::unique_ptr<Definition> definition_;
    std::string name_;
    std::vector<Column> columns_;
    std::uint64_t rowsRead_ = 0;
};

}  // namespace kestrel::jet
