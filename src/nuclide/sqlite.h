// The SQLite library: connections that are closed by themselves, and a record set that is read by
// column names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace kestrel {

// A database that cannot be used; what() says why, in words for the user.
class DatabaseError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A connection for reading. Whatever the file holds, a query ends: one that takes far longer
// or has far more rows than any sensible one is given up.
class SqliteConnection {
  public:
    // Throws DatabaseError.
    static std::unique_ptr<SqliteConnection> openFile(const std::string& path);
    // On the bytes of a database file.
    static std::unique_ptr<SqliteConnection> openImage(std::string image);

    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    // Throws DatabaseError. Only the first statement of the text counts.
    std::shared_ptr<sqlite3_stmt> prepare(std::string_view sql);
    // Grants the next query its time.
    void grantTime() { granted_ = std::clock(); }

  private:
    // Of the processor, so that a query is not given up because the machine is busy.
    // Under the sanitizers all work takes several times as long.
#if defined(KESTREL_SANITIZED)
    static constexpr std::clock_t timeLimit = 8 * CLOCKS_PER_SEC;
#else
    static constexpr std::clock_t timeLimit = 2 * CLOCKS_PER_SEC;
#endif

    SqliteConnection() = default;
    void open(const std::string& uri);
    void guard();
    static int isTooLate(void* connection);
    static int authorize(void* connection, int action, const char* first, const char* second,
                         const char* database, const char* view);

    std::string image_;
    sqlite3* handle_ = nullptr;
    std::clock_t granted_ = 0;
};

// The rows of a query, in order. At first it stands at the first row; without rows EOF and BOF are
// both true.
class Recordset {
  public:
    // Runs the query from its start. Both throw DatabaseError.
    Recordset(SqliteConnection& connection, std::shared_ptr<sqlite3_stmt> statement);
    void moveNext();
    void moveFirst();

    bool eof() const { return eof_; }
    bool bof() const { return bof_; }

    // Values of the present row by column name, in any letter case. Null is 0 or the empty text;
    // texts come trimmed of blanks at both ends. Throw DatabaseError for a name that is not there.
    bool isNull(std::string_view column) const;
    double number(std::string_view column) const;
    float single(std::string_view column) const;
    std::int32_t whole(std::string_view column) const;
    std::string text(std::string_view column) const;

  private:
    int index(std::string_view column) const;
    bool step();

    SqliteConnection* connection_;
    std::shared_ptr<sqlite3_stmt> statement_;
    std::vector<std::string> columns_;
    bool eof_ = true;
    bool bof_ = true;
    std::int64_t rows_ = 0;
    mutable std::size_t textRead_ = 0;
};

// A double as the nearest single-precision value; beyond its range infinite.
float toSingle(double value);

}  // namespace kestrel
