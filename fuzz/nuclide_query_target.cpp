// The parts of a stored query of an Access file, in any order and of any kind: the first byte of
// each is its attribute, the next its flag; three texts follow, each ended by a line feed. What is
// accepted is run: it must do nothing but read.

#include <sqlite3.h>

#include <algorithm>

#include "fuzz_input.h"
#include "nuclide/jet/stored_query.h"
#include "nuclide/sqlite_guard.h"

namespace {

int mustBeReading(void* /*none*/, int action, const char* first, const char* second,
                  const char* /*database*/, const char* /*view*/) {
    kestrel::fuzz::require(kestrel::isReading(action, first, second));
    return SQLITE_OK;
}

int isLong(void* rounds) {
    constexpr int most = 1000;
    return ++*static_cast<int*>(rounds) > most ? 1 : 0;
}

sqlite3* smallDatabase() {
    sqlite3* handle = nullptr;
    sqlite3_open(":memory:", &handle);
    sqlite3_exec(
        handle,
        "CREATE TABLE a (x INTEGER, y TEXT COLLATE NOCASE); INSERT INTO a VALUES (1, 'it');"
        "CREATE TABLE b (x REAL, y TEXT); INSERT INTO b VALUES (1.5, 'b')",
        nullptr, nullptr, nullptr);
    kestrel::limitWork(handle);
    sqlite3_set_authorizer(handle, mustBeReading, nullptr);
    return handle;
}

void run(const std::string& sql) {
    static sqlite3* const handle = smallDatabase();
    int rounds = 0;
    sqlite3_progress_handler(handle, 1000, isLong, &rounds);
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, &tail) == SQLITE_OK) {
        kestrel::fuzz::require(statement != nullptr && tail == sql.c_str() + sql.size());
        while (sqlite3_step(statement) == SQLITE_ROW) {
        }
    }
    sqlite3_finalize(statement);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::jet;
    std::string_view left = kestrel::fuzz::asText(data, size);
    const auto text = [&left] {
        const std::size_t end = std::min(left.find('\n'), left.size());
        std::string field(left.substr(0, end));
        left.remove_prefix(std::min(end + 1, left.size()));
        return field;
    };
    StoredQuery query{"q", {}};
    while (left.size() > 2) {
        QueryRow row{.attribute = left[0] % 12,
                     .order = std::string(left.substr(1, 1)),
                     .name1 = {},
                     .name2 = {},
                     .expression = {},
                     .flag = left[1] % 40};
        left.remove_prefix(2);
        row.name1 = text();
        row.name2 = text();
        row.expression = text();
        query.rows.push_back(std::move(row));
    }
    try {
        for (const QueryInput& input : inputsOf(query))
            joinsOrSortsBy(query, input.alias, "x");
        const std::string sql = selectText(query);
        kestrel::fuzz::require(sql.size() <= longestText);
        run(sql);
    } catch (const QueryError&) {
    }
    return 0;
}
