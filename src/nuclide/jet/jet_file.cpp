#include "nuclide/jet/jet_file.h"

// mdbtools.h needs the names of glib.h.
#include <glib.h>
#include <mdbtools.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel::jet {
namespace {

// The header page as the library leaves it when a file has been opened: deciphered.
constexpr int passwordOffset = 0x42;
constexpr int creationDateOffset = 0x72;
constexpr int jet3PasswordSize = 20;
constexpr int jet4PasswordSize = 40;
constexpr std::size_t maskSize = 4;

// The kinds of usage map that the library knows how to walk.
constexpr std::size_t leastMapSize = 5;
constexpr unsigned char greatestMapKind = 1;

ColumnKind kindOf(int type) {
    switch (type) {
        case MDB_BOOL:
            return ColumnKind::Logical;
        case MDB_BYTE:
        case MDB_INT:
        case MDB_LONGINT:
            return ColumnKind::Whole;
        case MDB_FLOAT:
        case MDB_DOUBLE:
            return ColumnKind::Real;
        case MDB_MONEY:
        case MDB_NUMERIC:
            return ColumnKind::Decimal;
        case MDB_TEXT:
        case MDB_MEMO:
            return ColumnKind::Text;
        case MDB_DATETIME:
            return ColumnKind::Date;
        case MDB_BINARY:
            return ColumnKind::Binary;
        default:
            return ColumnKind::Other;
    }
}

// Bytes that a value of the type takes on its page; 0 where that depends on the value.
int widthOf(int type) {
    switch (type) {
        case MDB_BYTE:
            return 1;
        case MDB_INT:
            return 2;
        case MDB_LONGINT:
        case MDB_FLOAT:
            return 4;
        case MDB_DOUBLE:
        case MDB_DATETIME:
        case MDB_MONEY:
            return 8;
        case MDB_NUMERIC:
            return 17;
        default:
            return 0;
    }
}

// Days since 30 December 1899; the time of day, behind the point, does not count.
std::string dateText(double days) {
    using namespace std::chrono;
    constexpr double earliest = -657434;  // 1 January 100
    constexpr double latest = 2958466;    // the day after 31 December 9999
    if (!(days >= earliest && days < latest))
        return {};
    const year_month_day date(sys_days(year(1899) / 12 / 30) +
                              std::chrono::days(toInt32(std::trunc(days))));
    return formatNumber(static_cast<int>(date.year()), "0000") + "-" +
           formatNumber(static_cast<unsigned>(date.month()), "00") + "-" +
           formatNumber(static_cast<unsigned>(date.day()), "00");
}

}  // namespace

struct JetFile::Handle {
    MdbHandle* mdb = nullptr;
    bool password = false;
};

namespace {

// An Access 2000 file masks the password with the date on which it was made; without a password the
// mask itself stands there. An older file has plain zeros then.
bool readPassword(MdbHandle* mdb) {
    const bool jet3 = mdb->f->jet_version == MDB_VER_JET3;
    std::array<unsigned char, maskSize> mask{};
    if (!jet3) {
        const double made = mdb_get_double(mdb->pg_buf, creationDateOffset);
        const std::uint32_t day =
            std::abs(made) < 1e9 ? static_cast<std::uint32_t>(toInt32(std::trunc(made))) : 0;
        for (std::size_t i = 0; i < maskSize; ++i)
            mask.at(i) = static_cast<unsigned char>(day >> (8 * i));
    }
    const int size = jet3 ? jet3PasswordSize : jet4PasswordSize;
    for (int i = 0; i < size; ++i) {
        if (mdb->pg_buf[passwordOffset + i] != mask.at(static_cast<std::size_t>(i) % maskSize))
            return true;
    }
    return false;
}

}  // namespace

JetFile::JetFile(const std::string& path) : handle_(std::make_unique<Handle>()) {
    handle_->mdb = mdb_open(path.c_str(), MDB_NOFLAGS);
    if (handle_->mdb == nullptr)
        throw JetError("it is no Access database that can be read");
    // The library fills up with zeros what is not there.
    if (InputFile(path).size() < static_cast<std::uint64_t>(handle_->mdb->fmt->pg_size)) {
        mdb_close(handle_->mdb);
        throw JetError("the file is damaged (it ends within its first page)");
    }
    handle_->password = handle_->mdb->f->jet_version <= MDB_VER_JET4 && readPassword(handle_->mdb);
}

JetFile::~JetFile() {
    mdb_close(handle_->mdb);
}

bool JetFile::hasPassword() const {
    return handle_->password;
}

struct JetTable::Definition {
    MdbHandle* mdb = nullptr;
    MdbCatalogEntry entry{};
    MdbTableDef* table = nullptr;

    const MdbColumn& column(std::size_t i) const {
        return *static_cast<const MdbColumn*>(g_ptr_array_index(table->columns, i));
    }

    // The value's bytes on the page; false for null. Throws JetError for a place outside the page.
    bool locate(std::size_t i, int& start, int& size) const {
        const MdbColumn& c = column(i);
        start = c.cur_value_start;
        size = c.cur_value_len;
        if (size == 0)
            return false;
        if (start < 0 || size < 0 ||
            start + std::max(size, widthOf(c.col_type)) > mdb->fmt->pg_size)
            throw JetError("the file is damaged");
        return true;
    }
};

JetTable::JetTable(JetFile& file, const std::string& name, std::uint32_t page)
    : definition_(std::make_unique<Definition>()), name_(name) {
    Definition& d = *definition_;
    d.mdb = file.handle().mdb;
    d.entry.mdb = d.mdb;
    d.entry.object_type = MDB_TABLE;
    d.entry.table_pg = page;
    std::snprintf(d.entry.object_name, sizeof d.entry.object_name, "%s", name.c_str());
    d.table = mdb_read_table(&d.entry);
    if (d.table == nullptr || d.table->usage_map == nullptr || d.table->map_sz < leastMapSize ||
        d.table->usage_map[0] > greatestMapKind)
        throw JetError("the file is damaged (table " + name + ")");
    if (mdb_read_columns(d.table) == nullptr)
        throw JetError("the file is damaged (columns of table " + name + ")");
    for (std::size_t i = 0; i < d.table->columns->len; ++i)
        columns_.push_back({d.column(i).name, kindOf(d.column(i).col_type)});
    mdb_rewind_table(d.table);
}

JetTable::~JetTable() {
    mdb_free_tabledef(definition_->table);
}

std::size_t JetTable::column(std::string_view name) const {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (equalIgnoringCase(columns_[i].name, name))
            return i;
    }
    throw JetError("the file is damaged (table " + name_ + " has no column " + std::string(name) +
                   ")");
}

bool JetTable::next() {
    const std::uint64_t declared = definition_->table->num_rows;
    const bool found = mdb_fetch_row(definition_->table) != 0;
    if (found && rowsRead_ == declared)
        throw JetError("the file is damaged (table " + name_ + " has more than its " +
                       std::to_string(declared) + " rows)");
    if (rowsRead_ == declared)
        return false;
    if (!found)
        throw JetError("the file is damaged (" + std::to_string(rowsRead_) + " of " +
                       std::to_string(declared) + " rows of table " + name_ + " can be read)");
    ++rowsRead_;
    return true;
}

std::optional<std::int64_t> JetTable::whole(std::size_t column) const {
    const Definition& d = *definition_;
    const int type = d.column(column).col_type;
    // The library tells a logical value by the length that it reports.
    if (type == MDB_BOOL)
        return d.column(column).cur_value_len != 0 ? 0 : -1;
    int start = 0;
    int size = 0;
    if (!d.locate(column, start, size))
        return std::nullopt;
    switch (type) {
        case MDB_BYTE:
            return mdb_get_byte(d.mdb->pg_buf, start);
        case MDB_INT:
            return static_cast<std::int16_t>(mdb_get_int16(d.mdb->pg_buf, start));
        case MDB_LONGINT:
            return static_cast<std::int32_t>(mdb_get_int32(d.mdb->pg_buf, start));
        default:
            return std::nullopt;
    }
}

std::optional<double> JetTable::real(std::size_t column) const {
    const Definition& d = *definition_;
    int start = 0;
    int size = 0;
    if (!d.locate(column, start, size))
        return std::nullopt;
    return d.column(column).col_type == MDB_FLOAT ? double{mdb_get_single(d.mdb->pg_buf, start)}
                                                  : mdb_get_double(d.mdb->pg_buf, start);
}

std::optional<std::string> JetTable::text(std::size_t column) const {
    const Definition& d = *definition_;
    int start = 0;
    int size = 0;
    if (!d.locate(column, start, size))
        return std::nullopt;
    const MdbColumn& c = d.column(column);
    const auto* bytes = reinterpret_cast<const char*>(d.mdb->pg_buf) + start;
    char* text = nullptr;
    switch (columns_[column].kind) {
        case ColumnKind::Date:
            return dateText(mdb_get_double(d.mdb->pg_buf, start));
        case ColumnKind::Binary:
            return std::string(bytes, static_cast<std::size_t>(size));
        case ColumnKind::Text:
            text = mdb_col_to_string(d.mdb, d.mdb->pg_buf, start, c.col_type, size);
            break;
        case ColumnKind::Decimal:
            text = c.col_type == MDB_MONEY
                       ? mdb_money_to_string(d.mdb, start)
                       : mdb_numeric_to_string(d.mdb, start, c.col_scale, c.col_prec);
            break;
        default:
            return std::nullopt;
    }
    std::string result = text == nullptr ? "" : text;
    g_free(text);
    return result;
}

}  // namespace kestrel::jet
