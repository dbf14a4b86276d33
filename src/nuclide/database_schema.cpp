#include "nuclide/database_schema.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <span>

#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::array engColumns = {"eng_eng", "eng_br", "eng_rad", "eng_raddef"};
constexpr std::array energyColumns = {"eng_eng", "eng_rad",       "eng_br",   "eng_raddef", "nc_a",
                                      "nc_z",    "nc_dmode",      "elm_name", "nc_i_num",   "nc_hl",
                                      "nc_tsec", "nc_1st_br_eng", "nc_1st_br"};
constexpr std::array lineColumns = {"eng_eng", "eng_br",      "eng_rad",  "eng_raddef",
                                    "eng_nc",  "eng_gam_num", "eng_dmode"};
constexpr std::array nuclideColumns = {"nc_id", "nc_a",    "nc_i_num",  "elm_name",     "nc_dmode",
                                       "nc_hl", "nc_tsec", "nc_1st_br", "nc_eng_update"};

struct Needed {
    const char* name;
    std::span<const char* const> columns;
};
constexpr std::array<Needed, 4> needed = {{{"eng", engColumns},
                                           {"q_eng_order_id", energyColumns},
                                           {"q_eng_order_id2", lineColumns},
                                           {"q_nuc", nuclideColumns}}};

bool hasColumn(sqlite3_stmt* statement, const char* name) {
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const char* column = sqlite3_column_name(statement, i);
        if (column != nullptr && equalIgnoringCase(column, name))
            return true;
    }
    return false;
}

bool hasTableOrView(SqliteConnection& connection, const std::string& name) {
    const Recordset found(connection,
                          connection.prepare("select 1 from sqlite_master where type in "
                                             "('table', 'view') and lower(name) = '" +
                                             name + "'"));
    return !found.eof();
}

// What is wrong with one table or view, a line for each fault.
std::string faultsOf(SqliteConnection& connection, const Needed& wanted) {
    const std::string name = wanted.name;
    if (!hasTableOrView(connection, name))
        return "there is no table or query " + name + "\n";
    std::shared_ptr<sqlite3_stmt> statement;
    try {
        statement = connection.prepare("select * from " + name);
    } catch (const DatabaseError& error) {
        return name + " cannot be used: " + error.what() + "\n";
    }
    std::string faults;
    for (const char* column : wanted.columns) {
        if (!hasColumn(statement.get(), column))
            faults += name + " has no column " + column + "\n";
    }
    return faults;
}

}  // namespace

void checkNuclideSchema(SqliteConnection& connection) {
    // A locked or broken file fails here, once and with its own reason.
    connection.prepare("select name from sqlite_master");
    std::string faults;
    for (const Needed& wanted : needed)
        faults += faultsOf(connection, wanted);
    if (!faults.empty())
        throw DatabaseError(faults.substr(0, faults.size() - 1));
}

}  // namespace kestrel
