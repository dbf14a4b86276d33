#include "nuclide/jet/jet_import.h"

#include <sqlite3.h>

#include <array>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "base/text.h"
#include "nuclide/jet/jet_file.h"
#include "nuclide/jet/stored_query.h"
#include "nuclide/sqlite_guard.h"

namespace kestrel::jet {
namespace {

constexpr std::uint32_t catalogPage = 2;
constexpr std::int64_t pageMask = 0xFFFFFF;
constexpr std::array requiredQueries = {"q_eng_order_id", "q_eng_order_id2", "q_nuc"};

// Values of the catalogue.
constexpr std::int64_t tableType = 1;
constexpr std::int64_t queryType = 5;
constexpr std::int64_t systemFlags = 0x80000002;

struct TableEntry {
    std::string name;
    std::uint32_t page;
};

struct Catalog {
    std::vector<TableEntry> tables;
    std::map<std::int64_t, StoredQuery> queries;  // by object number
    std::uint32_t queryTablePage = 0;
};

Catalog readCatalog(JetFile& file) {
    JetTable objects(file, "MSysObjects", catalogPage);
    const std::size_t id = objects.column("Id");
    const std::size_t name = objects.column("Name");
    const std::size_t type = objects.column("Type");
    const std::size_t flags = objects.column("Flags");
    Catalog catalog;
    while (objects.next()) {
        const std::int64_t number = objects.whole(id).value_or(0);
        const auto page = static_cast<std::uint32_t>(number & pageMask);
        const std::string called = objects.text(name).value_or("");
        const std::int64_t kind = objects.whole(type).value_or(0);
        const bool system = (objects.whole(flags).value_or(0) & systemFlags) != 0;
        if (kind == tableType && equalIgnoringCase(called, "MSysQueries"))
            catalog.queryTablePage = page;
        else if (kind == tableType && !system && !called.starts_with("MSys"))
            catalog.tables.push_back({called, page});
        else if (kind == queryType && !called.starts_with('~'))
            catalog.queries[number].name = called;
    }
    return catalog;
}

void readQueries(JetFile& file, Catalog& catalog) {
    if (catalog.queryTablePage == 0)
        return;
    JetTable table(file, "MSysQueries", catalog.queryTablePage);
    const std::size_t object = table.column("ObjectId");
    const std::size_t attribute = table.column("Attribute");
    const std::size_t order = table.column("Order");
    const std::size_t name1 = table.column("Name1");
    const std::size_t name2 = table.column("Name2");
    const std::size_t expression = table.column("Expression");
    const std::size_t flag = table.column("Flag");
    while (table.next()) {
        const auto query = catalog.queries.find(table.whole(object).value_or(0));
        if (query == catalog.queries.end())
            continue;
        QueryRow row{static_cast<int>(table.whole(attribute).value_or(-1)),
                     table.text(order).value_or(""),
                     table.text(name1),
                     table.text(name2),
                     {},
                     {}};
        if (const std::optional<std::int64_t> value = table.whole(flag))
            row.flag = static_cast<int>(*value);
        // Last, since a long text may lie on another page.
        row.expression = table.text(expression);
        query->second.rows.push_back(std::move(row));
    }
}

class Target {
  public:
    Target() {
        if (sqlite3_open(":memory:", &handle_) != SQLITE_OK)
            throw JetError("out of memory");
        limitWork(handle_);
        // A name in double quotes that fits nothing is an error, not a text.
        sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
        sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    }
    ~Target() { sqlite3_close_v2(handle_); }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    void execute(const std::string& sql) { run(prepare(sql).get()); }
    // One statement: what follows it is refused.
    std::shared_ptr<sqlite3_stmt> prepare(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        const char* tail = nullptr;
        check(sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, &tail));
        std::shared_ptr<sqlite3_stmt> result(statement, &sqlite3_finalize);
        if (statement == nullptr || tail != sql.c_str() + sql.size())
            throw JetError("it is more than one statement");
        return result;
    }
    // From here on statements read what was imported and do nothing else. Views of views can name
    // so much that preparing them would not come to an end.
    void allowOnlyReading() { sqlite3_set_authorizer(handle_, &Target::authorize, this); }
    void run(sqlite3_stmt* statement) {
        int result = SQLITE_ROW;
        while (result == SQLITE_ROW)
            result = sqlite3_step(statement);
        if (result != SQLITE_DONE)
            check(result);
        sqlite3_reset(statement);
    }

    std::string image() {
        // The library asks for the number of pages with a statement of its own.
        sqlite3_set_authorizer(handle_, nullptr, nullptr);
        sqlite3_int64 size = 0;
        const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
            sqlite3_serialize(handle_, "main", &size, 0), &sqlite3_free);
        if (!bytes)
            throw JetError("out of memory");
        return {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
    }

  private:
    static int authorize(void* target, int action, const char* first, const char* second,
                         const char* /*database*/, const char* /*view*/) {
        constexpr int mostNames = 100000;
        const bool ofSystem =
            action == SQLITE_READ && std::string_view(first).starts_with("sqlite_");
        const bool endless = ++static_cast<Target*>(target)->names_ > mostNames;
        return isReading(action, first, second) && !ofSystem && !endless ? SQLITE_OK : SQLITE_DENY;
    }
    void check(int result) {
        if (result != SQLITE_OK)
            throw JetError(sqlite3_errmsg(handle_));
    }

    sqlite3* handle_ = nullptr;
    int names_ = 0;  // in the statements prepared since only reading is allowed
};

const char* sqlType(ColumnKind kind) {
    switch (kind) {
        case ColumnKind::Logical:
        case ColumnKind::Whole:
            return "INTEGER";
        case ColumnKind::Real:
            return "REAL";
        case ColumnKind::Decimal:
            return "NUMERIC";
        // Access compares texts without regard to letter case.
        case ColumnKind::Text:
            return "TEXT COLLATE NOCASE";
        case ColumnKind::Date:
            return "TEXT";
        default:
            return "BLOB";
    }
}

void bindText(sqlite3_stmt* statement, int place, const std::optional<std::string>& text) {
    if (text)
        sqlite3_bind_text64(statement, place, text->data(), text->size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8);
    else
        sqlite3_bind_null(statement, place);
}

void bindValue(sqlite3_stmt* statement, int place, const JetTable& table, std::size_t column) {
    switch (table.columns()[column].kind) {
        case ColumnKind::Logical:
        case ColumnKind::Whole:
            if (const std::optional<std::int64_t> value = table.whole(column))
                sqlite3_bind_int64(statement, place, *value);
            else
                sqlite3_bind_null(statement, place);
            break;
        case ColumnKind::Real:
            if (const std::optional<double> value = table.real(column))
                sqlite3_bind_double(statement, place, *value);
            else
                sqlite3_bind_null(statement, place);
            break;
        case ColumnKind::Decimal:
        case ColumnKind::Text:
        case ColumnKind::Date:
            bindText(statement, place, table.text(column));
            break;
        default:
            sqlite3_bind_null(statement, place);
    }
}

// A long text may lie on another page than its row, so those columns are read last.
std::vector<std::size_t> readingOrder(const JetTable& table) {
    std::vector<std::size_t> order;
    for (const bool texts : {false, true}) {
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            if ((table.columns()[i].kind == ColumnKind::Text) == texts)
                order.push_back(i);
        }
    }
    return order;
}

// The kinds of the columns of the tables that were copied, by their names in small letters.
using ColumnKinds = std::map<std::pair<std::string, std::string>, ColumnKind>;

void copyTable(JetFile& file, const TableEntry& entry, Target& target, ColumnKinds& kinds) {
    JetTable table(file, entry.name, entry.page);
    for (const Column& column : table.columns())
        kinds[{toLower(entry.name), toLower(column.name)}] = column.kind;
    std::string columns;
    std::string places;
    for (const Column& column : table.columns()) {
        columns +=
            (columns.empty() ? "" : ", ") + quotedName(column.name) + " " + sqlType(column.kind);
        places += places.empty() ? "?" : ", ?";
    }
    target.execute("CREATE TABLE " + quotedName(entry.name) + " (" + columns + ")");
    const auto insert =
        target.prepare("INSERT INTO " + quotedName(entry.name) + " VALUES (" + places + ")");
    const std::vector<std::size_t> order = readingOrder(table);
    while (table.next()) {
        for (const std::size_t i : order)
            bindValue(insert.get(), static_cast<int>(i) + 1, table, i);
        target.run(insert.get());
    }
}

bool isRequired(const std::string& name) {
    for (const char* required : requiredQueries) {
        if (equalIgnoringCase(name, required))
            return true;
    }
    return false;
}

// A query that cannot be a view matters only if the nuclide windows need it.
void makeView(const StoredQuery& query, const ColumnKinds& kinds, Target& target) {
    const KindOf kindOf = [&kinds](std::string_view table, std::string_view column) {
        const auto found = kinds.find({toLower(table), toLower(column)});
        return found == kinds.end() ? ColumnKind::Other : found->second;
    };
    std::string why;
    try {
        std::string sql = "CREATE VIEW " + quotedName(query.name);
        target.execute(sql.append(" AS ").append(selectText(query, kindOf)));
        return;
    } catch (const QueryError& error) {
        why = error.what();
    } catch (const JetError& error) {
        why = error.what();
    }
    if (isRequired(query.name))
        throw JetError("the query " + query.name + " cannot be rebuilt: " + why);
}

// Without these each query would search whole tables.
std::set<std::string> indexesFor(const StoredQuery& query, Target& target) {
    std::set<std::string> places;
    for (const QueryInput& input : inputsOf(query)) {
        const auto columns = target.prepare("SELECT name FROM pragma_table_info(?)");
        bindText(columns.get(), 1, input.table);
        while (sqlite3_step(columns.get()) == SQLITE_ROW) {
            const std::string name =
                reinterpret_cast<const char*>(sqlite3_column_text(columns.get(), 0));
            if (joinsOrSortsBy(query, input.alias, name))
                places.insert(quotedName(toLower(input.table)) + " (" + quotedName(toLower(name)) +
                              ")");
        }
    }
    return places;
}

void makeIndexes(const Catalog& catalog, Target& target) {
    std::set<std::string> places;
    for (const auto& [number, query] : catalog.queries) {
        if (isRequired(query.name))
            places.merge(indexesFor(query, target));
    }
    int count = 0;
    for (const std::string& place : places) {
        std::string sql = "CREATE INDEX used_";
        sql.append(std::to_string(++count)).append(" ON ").append(place);
        try {
            target.execute(sql);
        } catch (const JetError&) {
            // The input is itself a query, and those cannot have an index.
        }
    }
}

}  // namespace

std::string importJetFile(const std::string& path) {
    JetFile file(path);
    if (file.hasPassword())
        throw JetError("the database is protected by a password");
    Catalog catalog = readCatalog(file);
    readQueries(file, catalog);
    Target target;
    target.execute("PRAGMA journal_mode = off");
    target.execute("BEGIN");
    ColumnKinds kinds;
    for (const TableEntry& table : catalog.tables)
        copyTable(file, table, target, kinds);
    for (const auto& [number, query] : catalog.queries)
        makeView(query, kinds, target);
    makeIndexes(catalog, target);
    target.execute("COMMIT");
    target.allowOnlyReading();
    for (const auto& [number, query] : catalog.queries) {
        if (isRequired(query.name))
            target.prepare("SELECT * FROM " + quotedName(query.name));
    }
    return target.image();
}

}  // namespace kestrel::jet
