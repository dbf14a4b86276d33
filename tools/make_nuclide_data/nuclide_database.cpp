#include <sqlite3.h>

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <variant>

#include "make_nuclide_data/nuclide_tables.h"

namespace kestrel {
namespace {

// Texts are compared without regard to letter case, as Access does.
constexpr const char* schema = R"(
pragma journal_mode = off;
pragma synchronous = off;
begin;
create table elm (elm_z integer primary key, elm_name text collate nocase);
create table nc (nc_id integer primary key, nc_z integer, nc_a integer, nc_i_num integer,
    nc_dmode text collate nocase, nc_hl text collate nocase, nc_tsec real, nc_1st_br_eng real,
    nc_1st_br real, nc_eng_update text);
create table eng (eng_nc integer, eng_gam_num integer, eng_eng real, eng_br real,
    eng_rad text collate nocase, eng_raddef text collate nocase, eng_dmode text collate nocase);
create table src (src_nc integer primary key, src_name text, src_date text);
create view q_eng_order_id as
    select eng.eng_eng, eng.eng_rad, eng.eng_br, eng.eng_raddef, nc.nc_a, nc.nc_z, nc.nc_dmode,
        elm.elm_name, nc.nc_i_num, nc.nc_hl, nc.nc_tsec, nc.nc_1st_br_eng, nc.nc_1st_br
    from elm inner join (nc inner join eng on nc.nc_id = eng.eng_nc) on elm.elm_z = nc.nc_z
    order by eng.eng_eng, nc.nc_id;
create view q_eng_order_id2 as
    select eng.* from nc inner join eng on nc.nc_id = eng.eng_nc
    order by eng.eng_nc, eng.eng_gam_num;
create view q_nuc as
    select nc.*, elm.elm_name from elm inner join nc on elm.elm_z = nc.nc_z
    order by nc.nc_z, nc.nc_a, nc.nc_i_num;
)";
constexpr const char* indexes = R"(
create index eng_by_energy on eng (eng_eng);
create index eng_by_nuclide on eng (eng_nc, eng_gam_num);
create index nc_by_nuclide on nc (nc_z, nc_a, nc_i_num);
create index elm_by_name on elm (elm_name);
commit;
)";

using Value = std::variant<double, std::int32_t, std::string>;

class Writer {
  public:
    explicit Writer(const std::string& path) {
        if (sqlite3_open(path.c_str(), &handle_) != SQLITE_OK)
            fail();
    }
    ~Writer() { sqlite3_close_v2(handle_); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void execute(const char* sql) {
        if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
            fail();
    }

    void prepareInsert(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr) != SQLITE_OK)
            fail();
        insert_ = {statement, &sqlite3_finalize};
    }

    void insert(const std::vector<Value>& values) {
        int place = 0;
        for (const Value& value : values)
            bind(++place, value);
        if (sqlite3_step(insert_.get()) != SQLITE_DONE)
            fail();
        sqlite3_reset(insert_.get());
    }

  private:
    // An empty text is written as null.
    void bind(int place, const Value& value) {
        if (const auto* number = std::get_if<double>(&value))
            sqlite3_bind_double(insert_.get(), place, *number);
        else if (const auto* whole = std::get_if<std::int32_t>(&value))
            sqlite3_bind_int(insert_.get(), place, *whole);
        else if (const auto& text = std::get<std::string>(value); text.empty())
            sqlite3_bind_null(insert_.get(), place);
        else
            sqlite3_bind_text(insert_.get(), place, text.c_str(), -1, SQLITE_TRANSIENT);
    }
    [[noreturn]] void fail() { throw std::runtime_error(sqlite3_errmsg(handle_)); }

    sqlite3* handle_ = nullptr;
    std::shared_ptr<sqlite3_stmt> insert_;
};

// Each source has one date.
std::string sourceOf(const std::string& date) {
    if (date == "2023-09-01")
        return "ENSDF";
    if (date == "2024-08-30")
        return "ENDF/B-VIII.1";
    return {};
}

void fill(Writer& writer, const NuclideTables& tables) {
    std::map<std::int32_t, std::string> elements;
    writer.prepareInsert("insert into nc values (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    for (const NuclideEntry& n : tables.nuclides) {
        elements[n.z] = n.element;
        // A strongest line of 0, not null: the nuclide window passes over states that have null
        // there, and pure beta emitters must be found too.
        writer.insert({n.id, n.z, n.a, n.isomer, n.decayModes, n.halfLife, n.halfLifeSeconds,
                       n.strongestEnergy, n.strongestIntensity, n.updated});
    }
    writer.prepareInsert("insert into src values (?, ?, ?)");
    for (const NuclideEntry& n : tables.nuclides)
        writer.insert({n.id, sourceOf(n.updated), n.updated});
    writer.prepareInsert("insert into elm values (?, ?)");
    for (const auto& [z, name] : elements)
        writer.insert({z, name});
    writer.prepareInsert("insert into eng values (?, ?, ?, ?, ?, ?, ?)");
    for (const LineEntry& l : tables.lines)
        writer.insert(
            {l.nuclide, l.number, l.energy, l.intensity, l.radiation, l.definition, l.decayMode});
}

}  // namespace

void writeNuclideDatabase(const NuclideTables& tables, const std::string& path) {
    const std::string unfinished = path + ".new";
    std::filesystem::remove(unfinished);
    {
        Writer writer(unfinished);
        writer.execute(schema);
        fill(writer, tables);
        writer.execute(indexes);
    }
    std::filesystem::rename(unfinished, path);
}

}  // namespace kestrel
