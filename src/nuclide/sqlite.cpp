#include "nuclide/sqlite.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/text.h"
#include "nuclide/sqlite_guard.h"

namespace kestrel {
namespace {

// Of the library itself, which keeps pages and what a query sorts, not the database.
constexpr sqlite3_int64 heapLimit = sqlite3_int64{256} << 20;
constexpr int instructionsPerStep = 1000;
constexpr std::size_t longestText = 255;  // as an Access text column
// More than the database that comes along has lines, and than a list can show.
constexpr std::int64_t mostRows = 200000;
// Of the texts that a query hands over, in bytes.
constexpr std::size_t mostText = std::size_t{32} << 20;

// Whether the file's last changes are kept in a second file beside it. To read such a file the
// library would make two more there.
bool keepsLog(InputFile& file) {
    constexpr std::size_t readVersionOffset = 19;
    const std::vector<std::byte> front = file.readFront(readVersionOffset + 1);
    return front.size() > readVersionOffset && front[readVersionOffset] == std::byte{2};
}

// An unfinished log holds changes that the file itself lacks.
void requireNoLog(const std::string& path) {
    if (fileExists(path + "-wal") && InputFile(path + "-wal").size() > 0)
        throw DatabaseError("its last changes are still in " + path +
                            "-wal; open and close it once with the program that wrote it");
}

// A path as an SQLite file name that forbids writing; characters with a meaning there are escaped.
std::string readOnlyUri(const std::string& path) {
    std::string uri = path.starts_with('/') ? "file://" : "file:";
    for (const char c : path) {
        if (c == '%')
            uri += "%25";
        else if (c == '?')
            uri += "%3f";
        else if (c == '#')
            uri += "%23";
        else
            uri += c;
    }
    InputFile file(path);
    if (!keepsLog(file))
        return uri + "?mode=ro";
    requireNoLog(path);
    return uri + "?immutable=1";
}

constexpr const char* tooLong = "a query of the database takes too long";

std::string reason(sqlite3* handle) {
    return handle == nullptr ? std::string("out of memory") : std::string(sqlite3_errmsg(handle));
}

}  // namespace

std::unique_ptr<SqliteConnection> SqliteConnection::openFile(const std::string& path) {
    std::unique_ptr<SqliteConnection> connection(new SqliteConnection);
    connection->open(readOnlyUri(path));
    connection->guard();
    return connection;
}

std::unique_ptr<SqliteConnection> SqliteConnection::openImage(std::string image) {
    std::unique_ptr<SqliteConnection> connection(new SqliteConnection);
    connection->open("file::memory:");
    connection->image_ = std::move(image);
    const auto size = static_cast<sqlite3_int64>(connection->image_.size());
    auto* bytes = reinterpret_cast<unsigned char*>(connection->image_.data());
    if (sqlite3_deserialize(connection->handle_, "main", bytes, size, size,
                            SQLITE_DESERIALIZE_READONLY) != SQLITE_OK)
        throw DatabaseError(reason(connection->handle_));
    // Not earlier: the library attaches the image.
    connection->guard();
    return connection;
}

void SqliteConnection::open(const std::string& uri) {
    sqlite3_hard_heap_limit64(heapLimit);
    const int result = sqlite3_open_v2(
        uri.c_str(), &handle_,
        uri == "file::memory:" ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI | SQLITE_OPEN_MEMORY
                               : SQLITE_OPEN_READONLY | SQLITE_OPEN_URI,
        nullptr);
    if (result != SQLITE_OK)
        throw DatabaseError(reason(handle_));
}

// The file may come from anywhere: its schema gets no functions with side effects, its values and
// the work of a query have limits.
void SqliteConnection::guard() {
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_exec(handle_, "pragma cell_size_check = on; pragma temp_store = memory;", nullptr,
                 nullptr, nullptr);
    sqlite3_limit(handle_, SQLITE_LIMIT_LENGTH, longestValue);
    limitWork(handle_);
    sqlite3_progress_handler(handle_, instructionsPerStep, &SqliteConnection::isTooLate, this);
    sqlite3_set_authorizer(handle_, &SqliteConnection::authorize, this);
}

// Asked at each name that a statement holds, also those of the views that it reads: so the time for
// preparing it is bounded as well.
int SqliteConnection::authorize(void* connection, int action, const char* first, const char* second,
                                const char* /*database*/, const char* /*view*/) {
    return isTooLate(connection) != 0 || !isReading(action, first, second) ? SQLITE_DENY
                                                                           : SQLITE_OK;
}

int SqliteConnection::isTooLate(void* connection) {
    const std::clock_t used = std::clock() - static_cast<SqliteConnection*>(connection)->granted_;
    return used > timeLimit ? 1 : 0;
}

SqliteConnection::~SqliteConnection() {
    sqlite3_close_v2(handle_);
}

std::shared_ptr<sqlite3_stmt> SqliteConnection::prepare(std::string_view sql) {
    grantTime();
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(handle_, sql.data(), static_cast<int>(sql.size()), 0, &statement,
                           nullptr) != SQLITE_OK)
        throw DatabaseError(isTooLate(this) != 0 ? tooLong : reason(handle_));
    return {statement, &sqlite3_finalize};
}

Recordset::Recordset(SqliteConnection& connection, std::shared_ptr<sqlite3_stmt> statement)
    : connection_(&connection), statement_(std::move(statement)) {
    const int count = sqlite3_column_count(statement_.get());
    for (int i = 0; i < count; ++i) {
        const char* name = sqlite3_column_name(statement_.get(), i);
        columns_.emplace_back(name == nullptr ? "" : name);
    }
    moveFirst();
}

void Recordset::moveFirst() {
    sqlite3_reset(statement_.get());
    connection_->grantTime();
    rows_ = 0;
    textRead_ = 0;
    eof_ = !step();
    bof_ = eof_;
}

void Recordset::moveNext() {
    bof_ = false;
    eof_ = eof_ || !step();
}

// False behind the last row.
bool Recordset::step() {
    const int result = sqlite3_step(statement_.get());
    if (result == SQLITE_ROW && ++rows_ > mostRows)
        throw DatabaseError("a query of the database has too many rows");
    if (result == SQLITE_ROW)
        return true;
    if (result == SQLITE_DONE)
        return false;
    const std::string why = result == SQLITE_INTERRUPT
                                ? std::string(tooLong)
                                : reason(sqlite3_db_handle(statement_.get()));
    sqlite3_reset(statement_.get());
    throw DatabaseError(why);
}

int Recordset::index(std::string_view column) const {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (columns_[i].size() == column.size() && equalIgnoringCase(columns_[i], column))
            return static_cast<int>(i);
    }
    throw DatabaseError("there is no column " + std::string(column));
}

bool Recordset::isNull(std::string_view column) const {
    return sqlite3_column_type(statement_.get(), index(column)) == SQLITE_NULL;
}

double Recordset::number(std::string_view column) const {
    return sqlite3_column_double(statement_.get(), index(column));
}

float Recordset::single(std::string_view column) const {
    return toSingle(number(column));
}

std::int32_t Recordset::whole(std::string_view column) const {
    return toInt32(number(column));
}

std::string Recordset::text(std::string_view column) const {
    const int i = index(column);
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), i));
    if (bytes == nullptr)
        return {};
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), i));
    textRead_ += std::min(size, longestText);
    if (textRead_ > mostText)
        throw DatabaseError("a query of the database has too much text");
    return std::string(trimBlanks({bytes, std::min(size, longestText)}));
}

float toSingle(double value) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (std::abs(value) > double{std::numeric_limits<float>::max()})
        return value < 0 ? -infinity : infinity;
    return static_cast<float>(value);
}

}  // namespace kestrel
